#pragma once

#include <xcb/xcb.h>

#include <vector>

#include "platform/x11/connection.h"

namespace platform::x11 {

// A window manager puts each window of a program, the client window, into a frame of its own and
// marks the client with WM_STATE. Main thread; each call is a few round trips.

/// The client window that `window` is or lies in; without a window manager the child of the root
/// that it is or lies in. XCB_WINDOW_NONE when the window is gone.
xcb_window_t clientAround(Connection& connection, xcb_window_t window);

/// The client window in `topLevel`, a child of the root; `topLevel` itself when none is marked.
xcb_window_t clientInside(Connection& connection, xcb_window_t topLevel);

/// The children of the root that can be seen, and hold the place (native pixels), topmost first.
std::vector<xcb_window_t> topLevelsAt(Connection& connection, std::int32_t x, std::int32_t y);

/// Whether the window exists, is mapped with everything around it, and can show something.
bool isVisibleWindow(Connection& connection, xcb_window_t window);

}  // namespace platform::x11
