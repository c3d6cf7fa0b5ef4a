#pragma once

#include "platform/x11/connection.h"

namespace platform::x11 {

/// Where the pixels of the window manager's decoration are to be had.
enum class DecorationSource {
    /// In the frame window's own pixmap.
    pixmap,
    /// On the screen only: KWin paints decorations while it composes the screen, and what the
    /// frame window holds there is whatever was below it.
    screen,
};

/// For the window manager of the moment. Main thread; some round trips.
[[nodiscard]] DecorationSource decorationSource(Connection& connection);

}  // namespace platform::x11
