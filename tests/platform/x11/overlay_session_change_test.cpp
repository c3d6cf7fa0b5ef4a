// The overlay of a session that changes under it: the compositor ends, the screen grows.
#include <gtest/gtest.h>

#include <chrono>

#include "overlay_stage_rig.h"
#include "pretended_compositor.h"

namespace {

using platform::x11::NativeRect;
using tests::display;
using tests::OverlayStageRig;
using tests::region;
using namespace std::chrono_literals;

TEST(OverlayStage, a_compositor_that_ends_while_the_overlay_is_up_leaves_no_black_window) {
    OverlayStageRig rig(desktop::Compositor::picom);
    const xcb_window_t window = rig.openPainted();
    rig.desktop().stopCompositor();
    int calls = 0;
    rig.stage().whenClear(region, [&] { ++calls; });
    EXPECT_TRUE(rig.runUntil([&] { return !rig.isViewable(window); }));
    EXPECT_EQ(calls, 0) << "the windows below get the time to repaint";
    rig.queue().advance(300ms);
    EXPECT_EQ(calls, 1);
    rig.stage().windowClosed(window);
    EXPECT_FALSE(rig.stage().holds(window));
}

TEST(OverlayStage, a_compositor_that_ends_during_a_capture_keeps_no_other_capture_waiting) {
    OverlayStageRig rig(desktop::Compositor::picom);
    const xcb_window_t window = rig.openPainted();
    int first = 0;
    int second = 0;
    rig.stage().whenClear(region, [&] { ++first; });
    rig.stage().whenClear(display, [&] { ++second; });
    rig.desktop().stopCompositor();
    rig.queue().advance(100ms);
    rig.queue().advance(300ms);
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 1);
    rig.stage().windowClosed(window);
}

TEST(OverlayStage, a_display_that_came_after_the_start_is_waited_for_as_any_other) {
    OverlayStageRig rig(desktop::Compositor::none, {{0, 0, 800, 600}, {100, 100, 400, 300}});
    rig.desktop().server().configure({"--output", "DUMMY1", "--pos", "800x0"});
    tests::PretendedCompositor compositor(rig);
    const NativeRect added{800, 0, 400, 300};
    const xcb_window_t window = tests::makeWindow(
        rig.connection().get(), {.frame = added, .depth = tests::PixelDepth::withAlpha});
    rig.stage().windowMapped(window, added, nullptr);
    EXPECT_EQ(rig.paint(window), platform::x11::PaintPermission::granted);
    int calls = 0;
    rig.stage().whenClear(added, [&] { ++calls; });
    compositor.compose(window, added);
    for (int frame = 0; frame < 3; ++frame) {
        compositor.paint({800, 0, 1, 1});
        compositor.paint({1199, 299, 1, 1});
    }
    EXPECT_EQ(calls, 0) << "what lies between the corners was not painted";
    compositor.paint(added);
    EXPECT_EQ(calls, 0);
    compositor.compose(window, added);
    compositor.paint(added);
    EXPECT_EQ(calls, 1);
}

}  // namespace
