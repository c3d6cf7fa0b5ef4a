#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "platform/x11/x11_overlay_stage.h"
#include "x11_rig.h"

namespace tests {

inline constexpr platform::x11::NativeRect display{0, 0, 800, 600};
inline constexpr platform::x11::NativeRect region{100, 100, 400, 300};
inline constexpr std::uint32_t gray = 0xff808080;
inline constexpr std::uint32_t darkest = 0x40;
inline constexpr std::uint32_t overlayColor = 0xffff00ff;

/// A gray screen with an overlay in a colour that a gray screen never has.
class OverlayStageRig {
  public:
    explicit OverlayStageRig(desktop::Compositor compositor,
                             std::vector<desktop::Output> outputs = {{0, 0, display.width,
                                                                      display.height}})
        : desktop_({.outputs = std::move(outputs),
                    .windowManager = desktop::WindowManager::none,
                    .compositor = compositor}),
          connection_(connectTo(desktop_)),
          stage_(*connection_, queue_) {
        queue_.allowLeftovers();
        if (compositor != desktop::Compositor::none) {
            awaitBlending(desktop_);
        }
        below_ = makeWindow(desktop_.client().get(), {.frame = display, .background = gray});
        awaitPixel(gray);
    }

    [[nodiscard]] platform::x11::X11OverlayStage& stage() { return stage_; }
    [[nodiscard]] doubles::ManualMainQueue& queue() { return queue_; }
    [[nodiscard]] platform::x11::Connection& connection() { return *connection_; }
    [[nodiscard]] desktop::Desktop& desktop() { return desktop_; }
    [[nodiscard]] xcb_window_t below() const { return below_; }

    xcb_window_t openLive() {
        const xcb_window_t window =
            makeWindow(connection_->get(), {.frame = display, .depth = PixelDepth::withAlpha});
        stage_.windowMapped(window, display, nullptr);
        return window;
    }
    platform::x11::PaintPermission paint(xcb_window_t window) {
        const auto permission = stage_.requestPaint(window);
        if (permission == platform::x11::PaintPermission::granted) {
            fill(connection_->get(), window, display, overlayColor);
        }
        return permission;
    }
    xcb_window_t openPainted() {
        const xcb_window_t window = openLive();
        EXPECT_EQ(paint(window), platform::x11::PaintPermission::granted);
        awaitPixel(overlayColor);
        return window;
    }
    bool runUntil(const std::function<bool()>& condition) {
        return tests::runUntil(*connection_, queue_, condition);
    }
    bool awaitGone(xcb_window_t window) {
        return runUntil([&] { return !stage_.holds(window); });
    }
    void awaitPixel(std::uint32_t color) {
        EXPECT_TRUE(runUntil(
            [&] { return desktop::readScreen(desktop_.client(), 5, 5, 1, 1).at(0, 0) == color; }));
    }
    /// How many pixels of `region` the window below never shows, read as the next thing that the
    /// server does. It shows grays above `darkest`.
    std::size_t overlayPixels() {
        const auto picture =
            desktop::readScreen(desktop_.client(), region.x, region.y, region.width, region.height);
        return static_cast<std::size_t>(
            std::count_if(picture.pixels.begin(), picture.pixels.end(), [](std::uint32_t pixel) {
                const std::uint32_t level = pixel & 0xffU;
                return level < darkest || pixel != (0xff000000U | level * 0x10101U);
            }));
    }
    bool isViewable(xcb_window_t window) {
        auto* const client = desktop_.client().get();
        const desktop::Reply<xcb_get_window_attributes_reply_t> reply(
            xcb_get_window_attributes_reply(client, xcb_get_window_attributes(client, window),
                                            nullptr));
        return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
    }

  private:
    desktop::Desktop desktop_;
    std::unique_ptr<platform::x11::Connection> connection_;
    doubles::ManualMainQueue queue_;
    platform::x11::X11OverlayStage stage_;
    xcb_window_t below_ = XCB_WINDOW_NONE;
};

}  // namespace tests
