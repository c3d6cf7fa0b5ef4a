#include "platform/x11/overlay_stage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "overlay_stage_rig.h"

namespace {

using platform::x11::Connection;
using platform::x11::PaintPermission;
using platform::x11::StageMode;
using platform::x11::X11OverlayStage;
using tests::display;
using tests::gray;
using tests::overlayColor;
using tests::OverlayStageRig;
using tests::PixelDepth;
using tests::region;

enum class Order { closeFirst, captureFirst };

/// Opens, paints, and asks for a clear screen again and again; gives how many of the screens seen
/// at that moment held a pixel of the overlay.
int spoiltCaptures(OverlayStageRig& rig, int count) {
    int spoilt = 0;
    for (int capture = 0; capture < count; ++capture) {
        const xcb_window_t window = rig.openPainted();
        const Order order = capture % 2 == 0 ? Order::closeFirst : Order::captureFirst;
        if (order == Order::closeFirst) {
            rig.stage().windowClosed(window);
        }
        int calls = 0;
        rig.stage().whenClear(region, [&] {
            ++calls;
            spoilt += rig.overlayPixels() > 0 ? 1 : 0;
        });
        if (order == Order::captureFirst) {
            rig.stage().windowClosed(window);
        }
        EXPECT_TRUE(rig.runUntil([&] { return calls > 0; }));
        EXPECT_TRUE(rig.awaitGone(window));
        EXPECT_EQ(calls, 1);
    }
    return spoilt;
}

/// Paints the window below in other grays as fast as the server takes it, so that the compositor is
/// always in the middle of a frame.
class BusyScreen {
  public:
    BusyScreen(const std::string& displayName, xcb_window_t window)
        : thread_([this, displayName, window] {
              const desktop::XClient client(displayName);
              for (std::uint32_t level = tests::darkest; !isOver_;
                   level = level == 0xf0 ? tests::darkest : level + 1) {
                  tests::fill(client.get(), window, display, level * 0x10101U);
                  client.synchronize();
              }
          }) {}
    ~BusyScreen() {
        isOver_ = true;
        thread_.join();
    }
    BusyScreen(const BusyScreen&) = delete;
    BusyScreen& operator=(const BusyScreen&) = delete;

  private:
    std::atomic<bool> isOver_ = false;
    std::thread thread_;
};

TEST(OverlayStage, is_live_only_where_a_compositor_runs) {
    OverlayStageRig rig(desktop::Compositor::none);
    EXPECT_EQ(rig.stage().mode(), StageMode::frozen);
    rig.desktop().startCompositor(desktop::Compositor::picom);
    EXPECT_EQ(rig.stage().mode(), StageMode::live);
}

TEST(OverlayStage, no_pixel_of_a_painted_overlay_is_left_when_the_screen_is_clear) {
    OverlayStageRig rig(desktop::Compositor::picom);
    EXPECT_EQ(spoiltCaptures(rig, 100), 0);
}

TEST(OverlayStage, no_pixel_is_left_under_a_compositor_that_fades) {
    OverlayStageRig rig(desktop::Compositor::picomFading);
    // Each overlay takes a third of a second to fade in.
    EXPECT_EQ(spoiltCaptures(rig, 30), 0);
}

TEST(OverlayStage, no_pixel_is_left_on_a_screen_that_is_painted_all_the_time) {
    OverlayStageRig rig(desktop::Compositor::picom);
    const BusyScreen busy(rig.desktop().displayName(), rig.below());
    EXPECT_EQ(spoiltCaptures(rig, 100), 0);
}

TEST(OverlayStage, a_window_that_never_painted_is_not_waited_for) {
    OverlayStageRig rig(desktop::Compositor::picom);
    const xcb_window_t window = rig.openLive();
    int calls = 0;
    rig.stage().whenClear(region, [&] { ++calls; });
    EXPECT_EQ(calls, 0) << "the call comes in a later turn";
    rig.queue().runAll();
    EXPECT_EQ(calls, 1);
    rig.stage().windowClosed(window);
    EXPECT_FALSE(rig.stage().holds(window));
}

TEST(OverlayStage, a_painted_window_elsewhere_is_not_waited_for) {
    OverlayStageRig rig(desktop::Compositor::picom);
    rig.openPainted();
    int calls = 0;
    rig.stage().whenClear({display.width, 0, 400, 300}, [&] { ++calls; });
    rig.queue().runAll();
    EXPECT_EQ(calls, 1);
    EXPECT_GT(rig.overlayPixels(), 0U);
}

TEST(OverlayStage, a_screen_that_nobody_repaints_is_waited_for_only_so_long) {
    OverlayStageRig rig(desktop::Compositor::none);
    // Owns the selection, and paints nothing.
    auto* const client = rig.desktop().client().get();
    xcb_set_selection_owner(client, rig.below(), rig.desktop().client().atom("_NET_WM_CM_S0"),
                            XCB_CURRENT_TIME);
    rig.desktop().client().synchronize();
    const xcb_window_t window = rig.openPainted();
    int calls = 0;
    rig.stage().whenClear(region, [&] { ++calls; });
    rig.stage().windowClosed(window);
    rig.queue().advance(std::chrono::milliseconds{4999});
    EXPECT_EQ(calls, 0);
    rig.queue().advance(std::chrono::milliseconds{5});
    EXPECT_EQ(calls, 1);
    rig.queue().advance(std::chrono::seconds{5});
    EXPECT_FALSE(rig.stage().holds(window));
    EXPECT_EQ(calls, 1);
}

TEST(OverlayStage, a_closed_window_lets_input_through_while_it_is_still_there) {
    OverlayStageRig rig(desktop::Compositor::picom);
    const xcb_window_t window = rig.openPainted();
    xcb_warp_pointer(rig.connection().get(), XCB_WINDOW_NONE, rig.connection().root(), 0, 0, 0, 0,
                     50, 50);
    const auto windowUnderPointer = [&] {
        auto* const server = rig.connection().get();
        const platform::x11::Reply<xcb_query_pointer_reply_t> reply(xcb_query_pointer_reply(
            server, xcb_query_pointer(server, rig.connection().root()), nullptr));
        return reply->child;
    };
    EXPECT_EQ(windowUnderPointer(), window);
    rig.stage().windowClosed(window);
    ASSERT_TRUE(rig.stage().holds(window));
    EXPECT_EQ(windowUnderPointer(), rig.below());
    EXPECT_TRUE(rig.runUntil([&] { return !rig.isViewable(window); }));
}

TEST(OverlayStage, painting_waits_for_a_capture_and_is_asked_for_again_after_it) {
    OverlayStageRig rig(desktop::Compositor::picom);
    const xcb_window_t window = rig.openPainted();
    std::vector<xcb_window_t> exposed;
    const auto subscription = rig.connection().subscribe([&](const xcb_generic_event_t& event) {
        if ((event.response_type & 0x7F) == XCB_EXPOSE) {
            exposed.push_back(reinterpret_cast<const xcb_expose_event_t&>(event).window);
        }
        return Connection::EventVerdict::pass;
    });
    rig.connection().dispatchPendingEvents();
    exposed.clear();
    std::size_t pixels = 1;
    rig.stage().whenClear(region, [&] { pixels = rig.overlayPixels(); });
    EXPECT_EQ(rig.paint(window), PaintPermission::later);
    EXPECT_TRUE(rig.runUntil([&] { return !exposed.empty(); }));
    EXPECT_EQ(pixels, 0U);
    EXPECT_EQ(exposed, std::vector{window});
    EXPECT_EQ(rig.paint(window), PaintPermission::granted);
    rig.awaitPixel(overlayColor);
}

TEST(OverlayStage, captures_of_two_regions_wait_each_for_its_own) {
    OverlayStageRig rig(desktop::Compositor::picom);
    const xcb_window_t window = rig.openPainted();
    std::vector<std::string> order;
    rig.stage().whenClear(
        region, [&] { order.emplace_back(rig.overlayPixels() == 0 ? "region" : "spoilt region"); });
    rig.stage().whenClear(display, [&] {
        const auto picture = desktop::readScreen(rig.desktop().client());
        const bool isClear = std::count(picture.pixels.begin(), picture.pixels.end(), gray) ==
                             display.width * display.height;
        order.emplace_back(isClear ? "display" : "spoilt display");
    });
    rig.stage().windowClosed(window);
    EXPECT_TRUE(rig.runUntil([&] { return order.size() == 2; }));
    EXPECT_EQ(order, (std::vector<std::string>{"region", "display"}));
    EXPECT_TRUE(rig.awaitGone(window));
}

TEST(OverlayStage, nothing_is_called_after_its_end) {
    OverlayStageRig rig(desktop::Compositor::picom);
    const xcb_window_t window = rig.openPainted();
    auto second = std::make_unique<X11OverlayStage>(rig.connection(), rig.queue());
    const xcb_window_t other = tests::makeWindow(
        rig.connection().get(), {.frame = display, .depth = PixelDepth::withAlpha});
    second->windowMapped(other, display, nullptr);
    EXPECT_EQ(second->requestPaint(other), PaintPermission::granted);
    int calls = 0;
    second->whenClear(region, [&] { ++calls; });
    second->whenClear({900, 0, 1, 1}, [&] { ++calls; });
    second->windowClosed(other);
    second.reset();
    EXPECT_TRUE(rig.runUntil([&] { return !rig.isViewable(other); }));
    rig.stage().windowClosed(window);
    EXPECT_TRUE(rig.awaitGone(window));
    rig.queue().advance(std::chrono::seconds{1});
    EXPECT_EQ(calls, 0);
}

TEST(OverlayStage, a_snapshot_keeps_what_the_overlay_covers) {
    OverlayStageRig rig(desktop::Compositor::none);
    const auto snapshot = rig.stage().snapshotFor(display);
    const xcb_window_t window =
        tests::makeWindow(rig.connection().get(), {.frame = display, .background = overlayColor});
    rig.stage().windowMapped(window, display, snapshot);
    rig.awaitPixel(overlayColor);
    EXPECT_EQ(rig.stage().snapshotInUse(display), snapshot);
    auto* const server = rig.connection().get();
    const platform::x11::Reply<xcb_get_image_reply_t> image(xcb_get_image_reply(
        server,
        xcb_get_image(server, XCB_IMAGE_FORMAT_Z_PIXMAP, snapshot->pixmap(), 5, 5, 1, 1, ~0U),
        nullptr));
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(xcb_get_image_data(image.get())[0], 0x80);
}

TEST(OverlayStage, a_snapshot_is_handed_over_while_the_overlay_is_up_and_for_a_moment_after) {
    OverlayStageRig rig(desktop::Compositor::none);
    const auto first = rig.stage().snapshotFor(display);
    const xcb_window_t window =
        tests::makeWindow(rig.connection().get(), {.frame = display, .background = overlayColor});
    rig.stage().windowMapped(window, display, first);
    EXPECT_EQ(rig.stage().snapshotFor(display), first);
    EXPECT_NE(rig.stage().snapshotFor({0, 0, 400, 300}), first);
    rig.stage().windowClosed(window);
    EXPECT_TRUE(rig.runUntil([&] { return !rig.isViewable(window); }));
    EXPECT_EQ(rig.stage().snapshotFor(display), first);
    rig.queue().advance(std::chrono::seconds{1});
    EXPECT_EQ(rig.stage().snapshotInUse(display), nullptr);
    EXPECT_NE(rig.stage().snapshotFor(display), first);
}

TEST(OverlayStage, a_snapshot_may_outlive_the_stage) {
    OverlayStageRig rig(desktop::Compositor::none);
    auto stage = std::make_unique<X11OverlayStage>(rig.connection(), rig.queue());
    const auto snapshot = stage->snapshotFor(display);
    const xcb_window_t window =
        tests::makeWindow(rig.connection().get(), {.frame = display, .background = overlayColor});
    stage->windowMapped(window, display, snapshot);
    stage->windowClosed(window);
    stage.reset();
    rig.queue().advance(std::chrono::seconds{1});
    EXPECT_EQ(snapshot->frame(), display);
}

}  // namespace
