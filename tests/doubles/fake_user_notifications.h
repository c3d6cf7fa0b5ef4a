#pragma once

#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "capture/user_notifications.h"
#include "doubles/call_log.h"

namespace doubles {

/// Asks a user who answers when the test says so. In a call log: "ask for notifications",
/// "notification: <title> | <body>".
class FakeUserNotifications final : public capture::UserNotifications, public Recorder {
  public:
    void requestAuthorization(std::function<void(capture::Authorization)> completion) override {
        record("ask for notifications");
        ++requestCount;
        pending_.push_back(std::move(completion));
    }
    void add(const capture::NotificationRequest& request) override {
        record("notification: " + request.title + " | " + request.body);
        posted.push_back(request);
    }
    std::string makeIdentifier() override { return "identifier-" + std::to_string(++lastNumber_); }

    /// Answers every question that waits with `authorization`.
    void answer() {
        for (auto& completion : std::exchange(pending_, {})) {
            completion(authorization);
        }
    }
    [[nodiscard]] std::size_t pendingCount() const { return pending_.size(); }

    capture::Authorization authorization = capture::Authorization::granted;
    std::vector<capture::NotificationRequest> posted;
    int requestCount = 0;

  private:
    std::deque<std::function<void(capture::Authorization)>> pending_;
    int lastNumber_ = 0;
};

}  // namespace doubles
