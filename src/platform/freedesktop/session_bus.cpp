#include "platform/freedesktop/session_bus.h"

#include "platform/session.h"

namespace platform::freedesktop {

std::optional<QDBusConnection> sessionBus() {
    if (!Session::fromEnvironment().hasSessionBus) {
        return std::nullopt;
    }
    QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.isConnected() ? std::optional(bus) : std::nullopt;
}

}  // namespace platform::freedesktop
