#pragma once

#include <xcb/xcb.h>

#include <functional>

#include "platform/text_rasterizer.h"
#include "platform/x11/connection.h"
#include "platform/x11/keyboard_mapping.h"
#include "platform/x11/overlay_focus.h"
#include "platform/x11/overlay_stack.h"
#include "platform/x11/overlay_stage.h"
#include "platform/x11/render_formats.h"
#include "platform/x11/x11_displays.h"
#include "platform/x11/x11_pointer.h"

namespace platform::x11 {

/// What all surfaces share. The factory owns it; nothing in it belongs to one surface.
struct SurfaceServices {
    Connection& connection;
    X11Displays& displays;
    X11Pointer& pointer;
    OverlayStage& stage;
    const KeyboardMapping& keyboardMapping;
    TextRasterizer& textRasterizer;
    RenderFormats formats;
    /// For windows of the ARGB visual.
    xcb_colormap_t colormap = XCB_NONE;
    OverlayFocus focus;
    OverlayStack stack;
    /// Called before a window is shown.
    std::function<void()> beforeShowing = [] {};
};

}  // namespace platform::x11
