#pragma once

#include "platform/x11/connection.h"

namespace platform::x11 {

/// Whether the server has the Composite extension, which it refuses to use before it was asked. No
/// round trip after the first call.
[[nodiscard]] bool announceComposite(Connection& connection);

}  // namespace platform::x11
