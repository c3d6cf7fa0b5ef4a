#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>

namespace app {

/// Posted to open the permissions window.
inline constexpr const char* openPermissionsWindowNotification = "OpenPermissionsWindow";
/// Posted to close the permissions window.
inline constexpr const char* closePermissionsWindowNotification = "ClosePermissionsWindow";
/// Posted after a window of this program became the active one.
inline constexpr const char* applicationDidBecomeActiveNotification = "ApplicationDidBecomeActive";

/// The process-wide notification centre: names without object and user info. Main thread.
class NotificationCenter {
  public:
    /// Ends its observation when it is destroyed; may outlive the centre.
    class Observation {
      public:
        Observation() = default;

      private:
        friend class NotificationCenter;
        explicit Observation(std::shared_ptr<const void> token) : token_(std::move(token)) {}
        std::shared_ptr<const void> token_;
    };

    /// Calls `observer` at each post of `name`, after the observers that came before.
    [[nodiscard]] Observation observe(const std::string& name, std::function<void()> observer);
    /// Calls the observers of `name` before it returns.
    void post(const std::string& name);

  private:
    std::multimap<std::string, std::weak_ptr<const std::function<void()>>> observers_;
};

}  // namespace app
