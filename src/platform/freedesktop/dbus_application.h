#pragma once

#include <functional>
#include <memory>
#include <string>

namespace platform::freedesktop {

/// This program on the session bus: one instance, which answers `org.freedesktop.Application`.
/// Main thread, between the making of the QCoreApplication and its end.
class DBusApplication {
  public:
    /// What a message asks for; called on the main thread, in a turn of its own.
    struct Hooks {
        std::function<void()> onActivate;
        /// "screenshot" or "recognize-text".
        std::function<void(const std::string& action)> onAction;
    };

    enum class Instance {
        /// This process owns the name, or there is no bus to own it on.
        first,
        /// Another process owns the name and has been asked to show itself.
        second,
    };

    explicit DBusApplication(Hooks hooks);
    /// Gives the name up; waits at most a second for the bus to confirm it.
    ~DBusApplication();
    DBusApplication(const DBusApplication&) = delete;
    DBusApplication& operator=(const DBusApplication&) = delete;

    /// Connects, takes the name and serves it. Waits at most a second for the name and as long for
    /// the first instance; a bus that gives no answer about the name is no bus.
    Instance start();

  private:
    class Service;
    std::unique_ptr<Service> service_;
};

}  // namespace platform::freedesktop
