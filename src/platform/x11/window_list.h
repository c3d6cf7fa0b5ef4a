#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <vector>

#include "platform/x11/connection.h"
#include "platform/x11/window_frame.h"
#include "platform/x11/window_kind.h"
#include "platform/x11/window_owner.h"

namespace platform::x11 {

enum class WindowPresence {
    onScreen,
    /// Minimised, or on another desktop.
    elsewhere,
};

struct ListedWindow {
    /// The program's own window.
    xcb_window_t id = XCB_WINDOW_NONE;
    /// The child of the root window that holds it: the window manager's frame, or the window.
    xcb_window_t topLevel = XCB_WINDOW_NONE;
    WindowFrame frame;
    WindowKind kind = WindowKind::ordinary;
    WindowPresence presence = WindowPresence::onScreen;
    WindowOwner owner;
};

/// The windows of the screen, front to back: those that the window manager lists, in its order, and
/// the mapped ones that it does not manage; without a window manager the mapped children of the
/// root. A handful of round trips however many windows there are. Main thread.
[[nodiscard]] std::vector<ListedWindow> listWindows(Connection& connection);

}  // namespace platform::x11
