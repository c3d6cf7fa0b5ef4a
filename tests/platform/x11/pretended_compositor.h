#pragma once

#include <xcb/composite.h>

#include <functional>

#include "overlay_stage_rig.h"

namespace tests {

/// Has the test in the place of a compositor: nothing paints the screen but `paint`, and what that
/// paints is the overlay's window as it was at the last `compose`.
class PretendedCompositor {
  public:
    explicit PretendedCompositor(OverlayStageRig& rig) : rig_(rig) {
        auto& client = rig.desktop().client();
        xcb_composite_query_version(client.get(), 0, 4);
        xcb_composite_redirect_subwindows(client.get(), client.root(),
                                          XCB_COMPOSITE_REDIRECT_MANUAL);
        xcb_set_selection_owner(client.get(), rig.below(), client.atom("_NET_WM_CM_S0"),
                                XCB_CURRENT_TIME);
        client.synchronize();
    }
    /// Reads the window, which lies over `frame`.
    void compose(xcb_window_t window, const platform::x11::NativeRect& frame) {
        // The server may take two programs' requests in any order: what was cleared comes first.
        (void)rig_.connection().serverTime();
        auto* const client = rig_.desktop().client().get();
        frame_ = frame;
        image_.reset(
            xcb_get_image_reply(client,
                                xcb_get_image(client, XCB_IMAGE_FORMAT_Z_PIXMAP, window, 0, 0,
                                              static_cast<std::uint16_t>(frame.width),
                                              static_cast<std::uint16_t>(frame.height), ~0U),
                                nullptr));
        ASSERT_NE(image_, nullptr);
    }
    /// A pixel of that, over a gray screen.
    [[nodiscard]] std::uint32_t composed(platform::x11::NativePoint point) const {
        const auto* const pixels =
            reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(image_.get()));
        const std::uint32_t pixel =
            pixels[(point.y - frame_.y) * frame_.width + point.x - frame_.x];
        return pixel >> 24U == 0 ? gray : pixel;
    }
    /// Puts a part of what was composed on the screen. `tint` changes its colours.
    void paint(const platform::x11::NativeRect& area,
               const std::function<std::uint32_t(std::uint32_t)>& tint = {}) {
        auto& client = rig_.desktop().client();
        std::vector<std::uint32_t> pixels;
        for (int y = area.y; y < area.y + area.height; ++y) {
            for (int x = area.x; x < area.x + area.width; ++x) {
                pixels.push_back(tint ? tint(composed({x, y})) : composed({x, y}));
            }
        }
        const xcb_gcontext_t context = xcb_generate_id(client.get());
        xcb_create_gc(client.get(), context, client.root(), XCB_GC_SUBWINDOW_MODE,
                      &includeInferiors);
        xcb_put_image(client.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, client.root(), context,
                      static_cast<std::uint16_t>(area.width),
                      static_cast<std::uint16_t>(area.height), static_cast<std::int16_t>(area.x),
                      static_cast<std::int16_t>(area.y), 0, 24,
                      static_cast<std::uint32_t>(pixels.size() * 4),
                      reinterpret_cast<const std::uint8_t*>(pixels.data()));
        xcb_free_gc(client.get(), context);
        client.synchronize();
        (void)rig_.connection().serverTime();
        rig_.connection().dispatchPendingEvents();
        rig_.queue().runAll();
    }

  private:
    static constexpr std::uint32_t includeInferiors = XCB_SUBWINDOW_MODE_INCLUDE_INFERIORS;

    OverlayStageRig& rig_;
    platform::x11::NativeRect frame_{};
    desktop::Reply<xcb_get_image_reply_t> image_;
};

}  // namespace tests
