#pragma once

#include <xcb/render.h>
#include <xcb/xcb.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/x11/connection.h"
#include "platform/x11/native_geometry.h"
#include "platform/x11/overlay_stage.h"
#include "platform/x11/paint_plan.h"
#include "platform/x11/render_formats.h"

namespace platform::x11 {

/// Carries out paint plans on one window of the overlay, the large parts by the server. Sends
/// requests and waits for nothing. Main thread; to be destroyed before its window.
///
/// A live window holds the pixels of the plan as they are. A frozen one has the snapshot as its
/// background, and shows it with the pixels of the plan over it.
class WindowPainter {
  public:
    /// `snapshot` is null for a live window, which has the ARGB visual; a frozen window has the
    /// root window's.
    WindowPainter(Connection& connection, const RenderFormats& formats, xcb_window_t window,
                  std::shared_ptr<const Snapshot> snapshot);
    ~WindowPainter();
    WindowPainter(const WindowPainter&) = delete;
    WindowPainter& operator=(const WindowPainter&) = delete;

    void paint(const PaintPlan& plan);

  private:
    void restoreBackground(const PaintPlan& plan);
    void copyBackground(const NativeRect& rect, Ground ground);
    void fillAreas(const PaintPlan& plan);
    void paintTile(const PaintPlan::Tile& tile);
    void upload(xcb_drawable_t target, const PaintPlan::Tile& tile, NativePoint at);
    void growScratch(std::int32_t width, std::int32_t height);
    void freeScratch();

    Connection& connection_;
    RenderFormats formats_;
    xcb_window_t window_;
    std::shared_ptr<const Snapshot> snapshot_;
    xcb_render_picture_t picture_;
    /// For the window's depth.
    xcb_gcontext_t context_;
    /// An ARGB pixmap in which tiles wait to be blended; frozen windows only.
    xcb_pixmap_t scratch_ = XCB_NONE;
    xcb_render_picture_t scratchPicture_ = XCB_NONE;
    xcb_gcontext_t scratchContext_ = XCB_NONE;
    std::int32_t scratchWidth_ = 0;
    std::int32_t scratchHeight_ = 0;
};

}  // namespace platform::x11
