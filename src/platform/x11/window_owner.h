#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/x11/connection.h"

namespace platform::x11 {

/// The program behind a window, as far as it can be known.
struct WindowOwner {
    std::optional<std::int32_t> processID;
    /// What the program calls itself, the name of its `.desktop` file at best; this program's own
    /// windows, and no others, have `platform::applicationIdentifier`.
    std::optional<std::string> applicationID;
    /// The class part of WM_CLASS.
    std::optional<std::string> className;
    /// Everything that may lead to its `.desktop` file, the best first: the toolkits' identifiers,
    /// the class and the instance part of WM_CLASS.
    std::vector<std::string> identifiers;
};

/// Who owns each of `windows`, in their order; give client windows, not the frames around them.
/// One round trip for all of them. Main thread.
///
/// The process is the one the server sees at the other end of the connection, else the one that
/// `_NET_WM_PID` claims.
std::vector<WindowOwner> ownersOf(Connection& connection, const std::vector<xcb_window_t>& windows);

/// Whether `window` was made through `connection`, as the windows of the overlay are.
bool isOwnWindow(const Connection& connection, xcb_window_t window);

/// Whether one program, through one connection, made both windows.
bool areOfOneClient(const Connection& connection, xcb_window_t first, xcb_window_t second);

}  // namespace platform::x11
