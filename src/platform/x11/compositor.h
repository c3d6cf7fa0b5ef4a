#pragma once

#include "platform/x11/connection.h"

namespace platform::x11 {

/// Whether a compositing manager blends the windows of the connection's screen: whether the
/// selection `_NET_WM_CM_Sn` has an owner. One round trip.
[[nodiscard]] bool isCompositorRunning(Connection& connection);

}  // namespace platform::x11
