#pragma once

#include <QDBusConnection>
#include <optional>

namespace platform::freedesktop {

/// The process's connection to the session bus; none when there is no bus. Connecting waits for
/// the bus's greeting, once. Main thread.
std::optional<QDBusConnection> sessionBus();

}  // namespace platform::freedesktop
