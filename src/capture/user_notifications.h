#pragma once

#include <functional>
#include <string>

namespace capture {

struct NotificationRequest {
    std::string identifier;
    std::string title;
    /// Plain text, UTF-8.
    std::string body;
};

enum class Authorization { granted, denied };

/// The desktop's notifications. Called on the main thread; nothing here waits.
class UserNotifications {
  public:
    virtual ~UserNotifications() = default;
    /// Asks whether alerts and sounds may be shown; `completion` is called exactly once, later, on
    /// a thread of the service's choosing.
    virtual void requestAuthorization(std::function<void(Authorization)> completion) = 0;
    /// Shows a notification at once.
    virtual void add(const NotificationRequest& request) = 0;
    /// A fresh random UUID in its string form.
    [[nodiscard]] virtual std::string makeIdentifier() = 0;
};

}  // namespace capture
