// How the overlay leaves the screen of a compositor that shows frames it composed long before.
#include <gtest/gtest.h>

#include <chrono>

#include "overlay_stage_rig.h"
#include "pretended_compositor.h"

namespace {

using platform::x11::NativeRect;
using tests::display;
using tests::gray;
using tests::region;
using namespace std::chrono_literals;

/// A painted overlay, and a capture of `captured` that waits for it to leave.
class LateCompositor : public testing::Test {
  protected:
    LateCompositor() {
        window = rig.openLive();
        EXPECT_EQ(rig.paint(window), platform::x11::PaintPermission::granted);
        compositor.compose(window, display);
        compositor.paint(display);
    }
    void capture(const NativeRect& captured) {
        rig.stage().whenClear(captured, [this, captured] {
            ++calls;
            const auto screen = desktop::readScreen(rig.desktop().client(), captured.x, captured.y,
                                                    captured.width, captured.height);
            left = std::count_if(screen.pixels.begin(), screen.pixels.end(),
                                 [](std::uint32_t pixel) { return pixel != gray; });
        });
    }
    std::uint32_t pixel(int x, int y) {
        return desktop::readScreen(rig.desktop().client(), x, y, 1, 1).at(0, 0);
    }

    tests::OverlayStageRig rig{desktop::Compositor::none};
    tests::PretendedCompositor compositor{rig};
    xcb_window_t window = XCB_WINDOW_NONE;
    int calls = 0;
    std::ptrdiff_t left = 0;
};

TEST_F(LateCompositor, two_frames_of_before_are_not_taken_for_the_cleared_screen) {
    capture(region);
    compositor.paint(display);
    compositor.paint(display);
    EXPECT_EQ(calls, 0);
    compositor.compose(window, display);
    compositor.paint(display);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(left, 0);
}

TEST_F(LateCompositor, the_first_frame_that_shows_the_cleared_region_is_enough) {
    capture(region);
    compositor.compose(window, display);
    compositor.paint(display);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(left, 0);
}

TEST_F(LateCompositor, a_frame_that_is_painted_in_parts_is_awaited_whole) {
    capture(region);
    compositor.compose(window, display);
    const int middle = region.y + region.height / 2;
    compositor.paint({0, 0, display.width, middle});
    EXPECT_EQ(calls, 0);
    compositor.paint({0, middle, display.width, display.height - middle});
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(left, 0);
}

TEST_F(LateCompositor, regions_at_any_edge_of_a_display_are_clear_in_the_end) {
    const NativeRect edges[] = {display,
                                {0, 0, 400, 300},
                                {400, 300, 400, 300},
                                {0, 300, 400, 300},
                                {400, 0, 400, 300},
                                {0, 100, 800, 300},
                                {100, 0, 300, 600},
                                {799, 0, 1, 600},
                                {0, 599, 800, 1},
                                {0, 0, 1, 1},
                                {799, 599, 1, 1}};
    for (const NativeRect& captured : edges) {
        SCOPED_TRACE(testing::Message() << captured.x << ", " << captured.y << ", "
                                        << captured.width << " x " << captured.height);
        calls = 0;
        capture(captured);
        compositor.paint(display);
        compositor.paint(display);
        EXPECT_EQ(calls, 0);
        for (int frame = 0; frame < 2 && calls == 0; ++frame) {
            compositor.compose(window, display);
            compositor.paint(display);
        }
        EXPECT_EQ(calls, 1);
        EXPECT_EQ(left, 0);
        EXPECT_EQ(rig.paint(window), platform::x11::PaintPermission::granted);
        compositor.compose(window, display);
        compositor.paint(display);
    }
}

TEST_F(LateCompositor, nothing_of_a_closed_overlay_stays_on_the_screen) {
    rig.stage().windowClosed(window);
    for (int frame = 0; frame < 2; ++frame) {
        ASSERT_TRUE(rig.stage().holds(window));
        compositor.compose(window, display);
        compositor.paint(display);
    }
    EXPECT_FALSE(rig.stage().holds(window));
    EXPECT_EQ(pixel(0, 0), gray);
    EXPECT_EQ(pixel(display.width - 1, display.height - 1), gray);
}

TEST_F(LateCompositor, one_that_changes_every_colour_is_given_eight_frames) {
    capture(region);
    const auto darker = [](std::uint32_t pixel) { return pixel >> 1U & 0x7f7f7f7fU; };
    for (int frame = 0; frame < 7; ++frame) {
        compositor.compose(window, display);
        compositor.paint(display, darker);
        EXPECT_EQ(calls, 0);
    }
    compositor.compose(window, display);
    compositor.paint(display, darker);
    EXPECT_EQ(calls, 1);
}

TEST_F(LateCompositor, a_clearing_is_repeated_for_one_that_paints_nothing) {
    capture(region);
    (void)rig.connection().serverTime();
    tests::fill(rig.desktop().client().get(), window, display, tests::overlayColor);
    rig.desktop().client().synchronize();
    rig.queue().advance(99ms);
    compositor.compose(window, display);
    EXPECT_EQ(compositor.composed({region.x, region.y}), tests::overlayColor);
    rig.queue().advance(1ms);
    compositor.compose(window, display);
    EXPECT_EQ(compositor.composed({region.x, region.y}), gray);
    compositor.paint(display);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(left, 0);
}

TEST_F(LateCompositor, a_wait_that_is_given_up_leaves_nothing_of_its_own_in_the_region) {
    rig.stage().whenClear(display, [this] {
        ++calls;
        compositor.compose(window, display);
    });
    rig.queue().advance(4900ms);
    EXPECT_EQ(calls, 0);
    rig.queue().advance(100ms);
    EXPECT_EQ(calls, 1);
    compositor.paint(display);
    EXPECT_EQ(pixel(0, 0), gray);
    EXPECT_EQ(pixel(display.width - 1, display.height - 1), gray);
}

}  // namespace
