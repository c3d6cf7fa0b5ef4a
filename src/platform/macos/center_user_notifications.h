#pragma once

#include <memory>

#include "capture/user_notifications.h"

namespace platform::macos {

/// The system's notification centre for this program. A process without a bundle has none, and is
/// denied.
class CenterUserNotifications final : public capture::UserNotifications {
  public:
    /// Main thread; `completion` comes on a queue of the service's, whenever the user has answered,
    /// and not any more when this object has gone.
    void requestAuthorization(std::function<void(capture::Authorization)> completion) override;
    /// Any thread.
    void add(const capture::NotificationRequest& request) override;
    /// Any thread.
    [[nodiscard]] std::string makeIdentifier() override;

  private:
    std::shared_ptr<const char> alive_ = std::make_shared<const char>('\0');
};

}  // namespace platform::macos
