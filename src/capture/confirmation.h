#pragma once

#include <string>

#include "base/log.h"
#include "capture/sound_player.h"
#include "capture/user_notifications.h"

namespace capture {

/// Tells the user that a delivery is done, by a sound and a notification. Main thread; returns at
/// once.
class Confirmation {
  public:
    /// What it needs of the outside; everything outlives it.
    struct Mediator {
        SoundPlayer& soundPlayer;
        UserNotifications& notifications;
        base::Log& log;
    };
    explicit Confirmation(Mediator mediator) : mediator_(mediator) {}

    /// Plays the desktop's sound of that name, else the file that stands in for it.
    void playSound(const std::string& name);
    /// The notification is posted when the desktop has allowed it; asked for anew each time.
    void postNotification(const std::string& title, const std::string& body);

  private:
    Mediator mediator_;
};

}  // namespace capture
