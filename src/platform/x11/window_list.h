#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <vector>

#include "platform/x11/connection.h"
#include "platform/x11/native_geometry.h"
#include "platform/x11/window_kind.h"
#include "platform/x11/window_owner.h"

namespace platform::x11 {

/// How far a window's own shadow reaches over its visible edges (`_GTK_FRAME_EXTENTS`).
struct FrameExtents {
    std::int32_t left = 0;
    std::int32_t right = 0;
    std::int32_t top = 0;
    std::int32_t bottom = 0;
    friend bool operator==(const FrameExtents&, const FrameExtents&) = default;
};

/// `frame` without `extents`; all of it where they cannot be right.
[[nodiscard]] NativeRect visiblePart(const NativeRect& frame, const FrameExtents& extents);

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
    /// With the window manager's frame, without the shadow that the window draws itself.
    NativeRect frame{};
    FrameExtents extents{};
    WindowKind kind = WindowKind::ordinary;
    WindowPresence presence = WindowPresence::onScreen;
    WindowOwner owner;
};

/// The windows of the screen, front to back: those that the window manager lists, in its order, and
/// the mapped ones that it does not manage; without a window manager the mapped children of the
/// root. A handful of round trips however many windows there are. Main thread.
[[nodiscard]] std::vector<ListedWindow> listWindows(Connection& connection);

}  // namespace platform::x11
