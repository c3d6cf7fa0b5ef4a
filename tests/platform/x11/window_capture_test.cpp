#include <gtest/gtest.h>

#include <cstdlib>

#include "capture_rig.h"

namespace {

using capture::WindowShadow;
using platform::x11::NativeRect;
using tests::CaptureRig;
using tests::pictureOf;
using tests::PixelDepth;
using Management = tests::PlainWindowOptions::Management;
using TestManagement = desktop::TestWindowOptions::Management;

/// Room that the drawn shadow takes at one pixel a point.
constexpr int side = 24;
constexpr int above = 16;
constexpr int below = 32;

desktop::DesktopOptions with(desktop::WindowManager windowManager, desktop::Compositor compositor) {
    return {.windowManager = windowManager, .compositor = compositor};
}

TEST(WindowCapture, of_a_covered_window_shows_all_of_it_under_a_compositor) {
    CaptureRig rig(with(desktop::WindowManager::none, desktop::Compositor::picom));
    const desktop::TestWindow window(
        rig.desktop().displayName(),
        {.x = 100, .y = 100, .width = 300, .height = 200, .management = TestManagement::unmanaged});
    tests::makeWindow(rig.desktop().client().get(),
                      {.frame = {50, 50, 300, 200}, .background = 0xff0000});
    rig.awaitPixel(200, 150, 0xffff0000);
    const auto image = rig.captureWindow(window.id(), WindowShadow::ignored);
    ASSERT_TRUE(image);
    EXPECT_EQ(desktop::difference(window.picture(), pictureOf(image.value())), "equal");
    EXPECT_EQ(image.value().alphaChannel(), base::AlphaChannel::none);
}

TEST(WindowCapture, has_the_decoration_of_the_window_manager) {
    CaptureRig rig(with(desktop::WindowManager::openbox, desktop::Compositor::picom));
    const desktop::TestWindow window(rig.desktop().displayName(),
                                     {.x = 100, .y = 100, .width = 300, .height = 200});
    const auto listed = rig.listed(window.id());
    ASSERT_TRUE(listed);
    const auto image = rig.captureWindow(window.id(), WindowShadow::ignored);
    ASSERT_TRUE(image);
    EXPECT_EQ(image.value().width(), listed->frame.size.width);
    EXPECT_EQ(image.value().height(), listed->frame.size.height);
    EXPECT_GT(image.value().height(), 200);
    const auto expected = desktop::readScreen(
        rig.desktop().client(), static_cast<int>(listed->frame.minX()),
        static_cast<int>(listed->frame.minY()), image.value().width(), image.value().height());
    EXPECT_EQ(desktop::difference(expected, pictureOf(image.value())), "equal");
}

TEST(WindowCapture, keeps_the_alpha_of_a_translucent_window) {
    CaptureRig rig(with(desktop::WindowManager::none, desktop::Compositor::picom));
    auto* const client = rig.desktop().client().get();
    tests::makeWindow(client, {.frame = {0, 0, 800, 600}, .background = 0xffffff});
    const xcb_window_t window = tests::makeWindow(
        client,
        {.frame = {100, 100, 60, 40}, .background = 0x80400000, .depth = PixelDepth::withAlpha});
    rig.awaitPixel(110, 110, 0xffbf7f7f);
    const auto image = rig.captureWindow(window, WindowShadow::ignored);
    ASSERT_TRUE(image);
    EXPECT_EQ(image.value().alphaChannel(), base::AlphaChannel::premultiplied);
    EXPECT_EQ(pictureOf(image.value()).at(30, 20), 0x80400000);
}

TEST(WindowCapture, draws_a_shadow_for_a_window_that_has_none) {
    CaptureRig rig(with(desktop::WindowManager::none, desktop::Compositor::picom));
    const desktop::TestWindow window(
        rig.desktop().displayName(),
        {.x = 100, .y = 100, .width = 300, .height = 200, .management = TestManagement::unmanaged});
    const auto image = rig.captureWindow(window.id(), WindowShadow::included);
    ASSERT_TRUE(image);
    EXPECT_EQ(image.value().width(), 300 + 2 * side);
    EXPECT_EQ(image.value().height(), 200 + above + below);
    EXPECT_EQ(image.value().alphaChannel(), base::AlphaChannel::premultiplied);
    const auto picture = pictureOf(image.value());
    EXPECT_EQ(picture.cut(side, above, 300, 200), window.picture());
    EXPECT_EQ(picture.at(0, 0), 0U);
    const std::uint32_t under = picture.at(side + 150, above + 204);
    EXPECT_EQ(under & 0xffffffU, 0U);
    EXPECT_GT(under >> 24U, 50U);
    EXPECT_LT(under >> 24U, 120U);
}

class OwnShadowCapture : public testing::Test {
  protected:
    OwnShadowCapture()
        : rig(with(desktop::WindowManager::none, desktop::Compositor::picom)),
          window(
              tests::makeWindow(rig.desktop().client().get(), {.frame = {100, 100, 120, 100},
                                                               .background = 0x40000000,
                                                               .depth = PixelDepth::withAlpha})) {
        tests::fill(rig.desktop().client().get(), window, {10, 5, 90, 75}, 0xff2244ee);
        tests::setNumbers(rig.desktop().client(), window, "_GTK_FRAME_EXTENTS", "CARDINAL",
                          {10, 20, 5, 20});
        rig.awaitPixel(150, 150, 0xff2244ee);
    }

    CaptureRig rig;
    xcb_window_t window;
};

TEST_F(OwnShadowCapture, keeps_the_shadow_that_the_window_draws) {
    const auto image = rig.captureWindow(window, WindowShadow::included);
    ASSERT_TRUE(image);
    const auto picture = pictureOf(image.value());
    ASSERT_EQ(picture.width, 120);
    ASSERT_EQ(picture.height, 100);
    EXPECT_EQ(picture.at(5, 50), 0x40000000U);
    EXPECT_EQ(picture.at(50, 50), 0xff2244eeU);
}

TEST_F(OwnShadowCapture, without_shadow_is_cut_to_the_visible_frame) {
    const auto image = rig.captureWindow(window, WindowShadow::ignored);
    ASSERT_TRUE(image);
    const auto picture = pictureOf(image.value());
    EXPECT_EQ(picture.width, 90);
    EXPECT_EQ(picture.height, 75);
    EXPECT_EQ(picture.at(0, 0), 0xff2244eeU);
    EXPECT_EQ(picture.at(89, 74), 0xff2244eeU);
}

TEST(WindowCapture, without_a_compositor_is_cut_from_what_the_overlay_froze) {
    CaptureRig rig(with(desktop::WindowManager::none, desktop::Compositor::none));
    const desktop::TestWindow window(
        rig.desktop().displayName(),
        {.x = 100, .y = 100, .width = 300, .height = 200, .management = TestManagement::unmanaged});
    const NativeRect display{0, 0, 800, 600};
    const auto snapshot = rig.stage().snapshotFor(display);
    const xcb_window_t overlay =
        tests::makeWindow(rig.connection().get(), {.frame = display, .background = 0xff00ff});
    rig.stage().windowMapped(overlay, display, snapshot);
    rig.awaitPixel(150, 150, 0xffff00ff);
    const auto plain = rig.captureWindow(window.id(), WindowShadow::ignored);
    ASSERT_TRUE(plain);
    EXPECT_EQ(desktop::difference(window.picture(), pictureOf(plain.value())), "equal");
    const auto shadowed = rig.captureWindow(window.id(), WindowShadow::included);
    ASSERT_TRUE(shadowed);
    EXPECT_EQ(pictureOf(shadowed.value()).cut(side, above, 300, 200), window.picture());
    EXPECT_EQ(pictureOf(shadowed.value()).at(0, 0), 0U);
}

TEST(WindowCapture, is_not_spoilt_by_a_painted_overlay_above_the_window) {
    CaptureRig rig(with(desktop::WindowManager::none, desktop::Compositor::picom));
    const desktop::TestWindow window(
        rig.desktop().displayName(),
        {.x = 100, .y = 100, .width = 300, .height = 200, .management = TestManagement::unmanaged});
    const NativeRect display{0, 0, 800, 600};
    int spoilt = 0;
    for (int index = 0; index < 100; ++index) {
        const xcb_window_t overlay = tests::makeWindow(
            rig.connection().get(), {.frame = display, .depth = PixelDepth::withAlpha});
        rig.stage().windowMapped(overlay, display, nullptr);
        EXPECT_EQ(rig.stage().requestPaint(overlay), platform::x11::PaintPermission::granted);
        tests::fill(rig.connection().get(), overlay, display, 0xffff00ff);
        rig.awaitPixel(150, 150, 0xffff00ff);
        const auto image = rig.captureWindow(window.id(), WindowShadow::ignored);
        rig.stage().windowClosed(overlay);
        ASSERT_TRUE(image);
        spoilt += pictureOf(image.value()) == window.picture() ? 0 : 1;
        ASSERT_TRUE(rig.runUntil([&] { return !rig.stage().holds(overlay); }));
    }
    EXPECT_EQ(spoilt, 0);
}

TEST(WindowCapture, of_a_window_that_is_gone_or_minimised_fails_with_a_sentence) {
    CaptureRig rig(with(desktop::WindowManager::none, desktop::Compositor::none));
    auto* const client = rig.desktop().client().get();
    const xcb_window_t window =
        tests::makeWindow(client, {.frame = {100, 100, 60, 40}, .background = 0x123456});
    rig.desktop().client().synchronize();
    const auto listed = rig.listed(window);
    ASSERT_TRUE(listed);
    xcb_unmap_window(client, window);
    rig.desktop().client().synchronize();
    const auto unmapped = rig.capture(capture::WindowFilter{*listed}, {});
    ASSERT_FALSE(unmapped);
    EXPECT_EQ(unmapped.error().sentence, "The window is minimised or on another desktop.");
    xcb_destroy_window(client, window);
    rig.desktop().client().synchronize();
    const auto gone = rig.capture(capture::WindowFilter{*listed}, {});
    ASSERT_FALSE(gone);
    EXPECT_EQ(gone.error().sentence, "The window is gone.");
    EXPECT_FALSE(rig.capture(capture::WindowFilter{}, {}));
}

TEST(WindowCapture, is_refused_with_the_pointer_or_scaled) {
    CaptureRig rig(with(desktop::WindowManager::none, desktop::Compositor::none));
    const capture::DisplayFilter display{rig.content().displays.at(0), {}};
    capture::StreamConfiguration configuration;
    configuration.cursor = capture::CursorVisibility::hidden;
    configuration.scaling = capture::Scaling::none;
    EXPECT_TRUE(rig.captureAsIs(display, configuration));
    configuration.cursor = capture::CursorVisibility::shown;
    EXPECT_EQ(rig.captureAsIs(display, configuration).error().kind, base::ErrorKind::unavailable);
    configuration.cursor = capture::CursorVisibility::hidden;
    configuration.scaling = capture::Scaling::toFit;
    EXPECT_EQ(rig.captureAsIs(display, configuration).error().kind, base::ErrorKind::unavailable);
}

}  // namespace
