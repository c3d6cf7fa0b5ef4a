#pragma once

#include <cstdint>

#include "platform/x11/connection.h"

namespace platform::x11 {

// What a program asks of the window manager about its own windows. Requests without an answer; a
// session without a window manager ignores them.
//
// Source: Extended Window Manager Hints 1.5.

/// Brings a window to the front with the input, as the user's own wish of this moment: window
/// managers that keep programs from stealing the focus let it pass. One round trip for the time.
void requestActivation(Connection& connection, xcb_window_t window);

enum class TaskbarPresence { shown, hidden };

/// Whether task bars, pagers and window switchers list a mapped window.
void requestTaskbarPresence(Connection& connection, xcb_window_t window, TaskbarPresence presence);

}  // namespace platform::x11
