#include "capture/confirmation.h"

#include <optional>

namespace capture {

void Confirmation::playSound(const std::string& name) {
    std::optional<Sound> sound = mediator_.soundPlayer.soundNamed(name);
    if (!sound) {
        sound = mediator_.soundPlayer.soundInFallbackFile(name);
    }
    if (!sound) {
        mediator_.log.line("Failed to play sound: " + name);
        return;
    }
    mediator_.soundPlayer.play(*sound);
}

void Confirmation::postNotification(const std::string& title, const std::string& body) {
    UserNotifications& notifications = mediator_.notifications;
    notifications.requestAuthorization([&notifications, title, body](Authorization answer) {
        switch (answer) {
            case Authorization::granted:
                notifications.add({notifications.makeIdentifier(), title, body});
                return;
            case Authorization::denied:
                return;
        }
    });
}

}  // namespace capture
