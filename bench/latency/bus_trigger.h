#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <optional>
#include <string>

namespace latency {

/// Calls other programs over the desktop's session bus, without waiting for their answers.
class BusTrigger {
  public:
    /// Connects to the bus at `address`.
    explicit BusTrigger(const std::string& address);
    ~BusTrigger();
    BusTrigger(const BusTrigger&) = delete;
    BusTrigger& operator=(const BusTrigger&) = delete;

    /// Whether `service` has a name on the bus.
    [[nodiscard]] bool isThere(const std::string& service);
    /// Calls a method with one number; the moment before it left.
    double call(const std::string& service, const std::string& path, const std::string& interface,
                const std::string& method, int argument);
    /// Clicks the item of the tray menu of `service` whose label is `label`; nothing when there is
    /// none.
    std::optional<double> clickMenuItem(const std::string& service, const std::string& label);

  private:
    [[nodiscard]] std::optional<int> menuItem(const QString& service, const QString& label);
    double send(const QDBusMessage& message);

    QDBusConnection connection_;
};

}  // namespace latency
