#pragma once

#include <xcb/render.h>
#include <xcb/xcb.h>

#include "base/result.h"
#include "platform/x11/connection.h"

namespace platform::x11 {

/// How the server's RENDER extension names the kinds of pixels that the overlay needs.
struct RenderFormats {
    /// 32 bits, alpha in the highest byte, then red, green and blue: windows of that visual, and
    /// tiles.
    xcb_render_pictformat_t argb = 0;
    xcb_visualid_t argbVisual = 0;
    /// The pixels of the root window.
    xcb_render_pictformat_t root = 0;

    /// Asks the server: two round trips. Fails when it cannot blend.
    static base::Result<RenderFormats> query(Connection& connection);
};

}  // namespace platform::x11
