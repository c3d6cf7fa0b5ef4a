// Windows that others cover, on a desktop that keeps nothing of what is covered.
#include <gtest/gtest.h>

#include "capture_rig.h"
#include "platform/x11/redirected_windows.h"
#include "platform/x11/window_pixmap.h"

namespace {

using capture::WindowShadow;
using platform::x11::ListedWindow;
using platform::x11::NativeRect;
using platform::x11::WindowPixmap;
using platform::x11::WindowPresence;
using platform::x11::windowsToKeep;
using tests::CaptureRig;
using tests::pictureOf;

constexpr NativeRect screen{0, 0, 800, 600};
const std::vector<NativeRect> screens{screen};
constexpr std::int32_t front = 100;
constexpr std::int32_t other = 200;

ListedWindow windowOf(std::int32_t process, xcb_window_t id, const NativeRect& frame) {
    ListedWindow window;
    window.id = id;
    window.topLevel = id + 1000;
    window.frame.visible = frame;
    window.owner.processID = process;
    return window;
}

struct Covered {
    xcb_window_t topLevel;
    std::vector<NativeRect> visibleParts;
    friend bool operator==(const Covered&, const Covered&) = default;
};

/// Those of which the displays do not show everything.
std::vector<Covered> coveredWindows(const std::vector<ListedWindow>& windows,
                                    const std::vector<NativeRect>& displays) {
    std::vector<Covered> covered;
    for (const auto& window : windowsToKeep(windows, front, displays)) {
        if (!window.isWhole()) {
            covered.push_back({window.topLevel, window.visibleParts});
        }
    }
    return covered;
}

TEST(CoveredWindows, are_those_of_the_process_that_a_window_in_front_of_them_covers) {
    EXPECT_EQ(
        coveredWindows(
            {windowOf(front, 1, {0, 0, 100, 100}), windowOf(other, 2, {90, 50, 100, 100}),
             windowOf(front, 3, {180, 0, 50, 200}), windowOf(front, 4, {300, 300, 50, 50})},
            screens),
        (std::vector<Covered>{{1003, {{180, 0, 50, 50}, {180, 150, 50, 50}, {190, 50, 40, 100}}}}));
}

TEST(CoveredWindows, include_those_that_reach_over_the_edge_of_the_screen) {
    EXPECT_EQ(coveredWindows({windowOf(front, 1, {-1, 0, 100, 100})}, screens),
              (std::vector<Covered>{{1001, {{0, 0, 99, 100}}}}));
}

TEST(CoveredWindows, include_those_that_reach_where_no_display_is) {
    EXPECT_EQ(
        coveredWindows({windowOf(front, 1, {750, 500, 100, 200})}, {screen, {800, 0, 400, 400}}),
        (std::vector<Covered>{{1001, {{750, 500, 50, 100}}}}));
    EXPECT_EQ(
        coveredWindows({windowOf(front, 1, {750, 300, 100, 50})}, {screen, {800, 0, 400, 400}}),
        std::vector<Covered>{});
}

TEST(CoveredWindows, are_not_covered_by_windows_that_are_not_on_the_screen) {
    auto minimised = windowOf(other, 1, {0, 0, 100, 100});
    minimised.presence = WindowPresence::elsewhere;
    EXPECT_EQ(coveredWindows({minimised, windowOf(front, 2, {0, 0, 100, 100})}, screens),
              std::vector<Covered>{});
}

TEST(CoveredWindows, are_covered_by_the_shadows_that_windows_draw_too) {
    auto shadowed = windowOf(other, 1, {100, 0, 50, 50});
    shadowed.frame.margins = {10, 10, 10, 10};
    EXPECT_EQ(coveredWindows({shadowed, windowOf(front, 2, {0, 0, 100, 60})}, screens),
              (std::vector<Covered>{{1002, {{0, 0, 90, 60}}}}));
}

/// Two windows, and an overlay that shows a snapshot over them.
class FrozenOverlay : public testing::Test {
  protected:
    FrozenOverlay()
        : rig_({.windowManager = desktop::WindowManager::none}),
          below_(rig_.desktop().displayName(), {.x = 100,
                                                .y = 100,
                                                .width = 300,
                                                .height = 200,
                                                .management = Management::unmanaged}),
          above_(rig_.desktop().displayName(), {.x = 50,
                                                .y = 50,
                                                .width = 300,
                                                .height = 200,
                                                .management = Management::unmanaged,
                                                .seed = 2}) {}

    void openOverlay() {
        const auto snapshot = rig_.stage().snapshotFor(screen);
        overlay_ = tests::makeWindow(rig_.connection().get(), {.frame = screen});
        rig_.stage().windowMapped(overlay_, screen, snapshot);
        rig_.queue().runAll();
    }
    bool isRedirected(const desktop::TestWindow& window) {
        const auto pixmap = WindowPixmap::of(rig_.connection(), window.id());
        return pixmap && pixmap.value();
    }

    using Management = desktop::TestWindowOptions::Management;
    CaptureRig rig_;
    desktop::TestWindow below_;
    desktop::TestWindow above_;
    xcb_window_t overlay_ = XCB_WINDOW_NONE;
};

TEST_F(FrozenOverlay, has_a_covered_window_taken_whole) {
    openOverlay();
    const auto image = rig_.captureWindow(below_.id(), WindowShadow::ignored);
    ASSERT_TRUE(image);
    EXPECT_EQ(desktop::difference(below_.picture(), pictureOf(image.value())), "equal");
}

TEST_F(FrozenOverlay, has_a_covered_window_taken_whole_when_it_closes_before_the_capture) {
    openOverlay();
    auto listed = rig_.listed(below_.id());
    ASSERT_TRUE(listed);
    rig_.stage().windowClosed(overlay_);
    capture::StreamConfiguration configuration;
    configuration.singleWindowShadow = WindowShadow::ignored;
    const auto image = rig_.capture(capture::WindowFilter{*listed}, configuration);
    ASSERT_TRUE(image);
    EXPECT_EQ(desktop::difference(below_.picture(), pictureOf(image.value())), "equal");
    listed.reset();
    EXPECT_FALSE(isRedirected(below_)) << "let go of with the listing";
}

TEST_F(FrozenOverlay, leaves_a_window_alone_of_which_everything_shows) {
    openOverlay();
    EXPECT_TRUE(isRedirected(below_));
    EXPECT_FALSE(isRedirected(above_));
    const auto image = rig_.captureWindow(above_.id(), WindowShadow::ignored);
    ASSERT_TRUE(image);
    EXPECT_EQ(desktop::difference(above_.picture(), pictureOf(image.value())), "equal");
}

TEST_F(FrozenOverlay, that_closes_leaves_the_windows_as_they_were) {
    const auto before = desktop::readScreen(rig_.desktop().client());
    openOverlay();
    EXPECT_TRUE(isRedirected(below_));
    rig_.stage().windowClosed(overlay_);
    EXPECT_FALSE(isRedirected(below_));
    EXPECT_EQ(desktop::difference(before, desktop::readScreen(rig_.desktop().client())), "equal");
}

TEST_F(FrozenOverlay, that_closes_in_the_turn_of_its_opening_redirects_nothing) {
    const auto snapshot = rig_.stage().snapshotFor(screen);
    overlay_ = tests::makeWindow(rig_.connection().get(), {.frame = screen});
    rig_.stage().windowMapped(overlay_, screen, snapshot);
    rig_.stage().windowClosed(overlay_);
    rig_.queue().runAll();
    EXPECT_FALSE(isRedirected(below_));
}

}  // namespace
