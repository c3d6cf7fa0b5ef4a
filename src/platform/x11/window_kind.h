#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <vector>

#include "platform/x11/connection.h"

namespace platform::x11 {

/// What a window is for, as far as it matters for its place among the others.
enum class WindowKind {
    ordinary,
    desktop,
    dock,
    menu,
    dragImage,
    notification,
    unmanaged,
    overlay
};

enum class Management { managed, unmanaged };

/// The kind by the values of `_NET_WM_WINDOW_TYPE`, of which the first known one counts, and by
/// whether the window manager leaves the window alone.
[[nodiscard]] WindowKind kindOf(Connection& connection, const std::vector<std::uint32_t>& types,
                                Management management);

/// 0 for ordinary windows; the others have the levels that the window system has for them of which
/// the layers are known: the desktop below 0, docks 20, notifications 25, menus and what no window
/// manager manages 101, dragged images 500, the overlay 1000.
[[nodiscard]] int layerOf(WindowKind kind);

}  // namespace platform::x11
