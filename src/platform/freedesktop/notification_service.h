#pragma once

#include <functional>
#include <memory>
#include <string>

#include "base/main_queue.h"
#include "capture/user_notifications.h"

namespace platform::freedesktop {

/// The desktop's notifications through org.freedesktop.Notifications. Nothing waits: every call to
/// the bus is asynchronous, completions come on the main thread through the queue.
///
/// Source of the interface: Desktop Notifications Specification 1.2.
class NotificationService final : public capture::UserNotifications {
  public:
    /// `queue` must outlive the object. Main thread, while a QCoreApplication lives.
    explicit NotificationService(base::MainQueue& queue);
    ~NotificationService() override;
    NotificationService(const NotificationService&) = delete;
    NotificationService& operator=(const NotificationService&) = delete;

    /// Granted when a server runs, or the bus can start one.
    void requestAuthorization(std::function<void(capture::Authorization)> completion) override;
    void add(const capture::NotificationRequest& request) override;
    [[nodiscard]] std::string makeIdentifier() override;

  private:
    class Client;
    base::MainQueue& queue_;
    /// Shared with what is queued and what the bus has not answered, which hold it weakly.
    std::shared_ptr<Client> client_;
};

/// The text so that a server that reads markup shows it as it is.
std::string escapedForMarkup(const std::string& text);

}  // namespace platform::freedesktop
