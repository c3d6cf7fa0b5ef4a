#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <optional>

#include "capture_rig.h"
#include "desktop/x_resources.h"

namespace {

using base::Rect;
using platform::x11::DisplayLayout;
using platform::x11::DisplayRole;
using platform::x11::NativeRect;
using tests::CaptureRig;
using tests::pictureOf;
using tests::PixelDepth;

constexpr NativeRect display{0, 0, 800, 600};
constexpr std::uint32_t black = 0xff000000;
constexpr std::uint32_t overlayColor = 0xffff00ff;

desktop::TestWindowOptions wholeScreen() {
    return {.width = display.width,
            .height = display.height,
            .management = desktop::TestWindowOptions::Management::unmanaged};
}

desktop::DesktopOptions with(desktop::Compositor compositor) {
    return {.windowManager = desktop::WindowManager::none, .compositor = compositor};
}

/// An overlay whose every pixel is `overlayColor`, known to the stage.
xcb_window_t openOverlay(CaptureRig& rig) {
    const bool isLive = rig.stage().mode() == platform::x11::StageMode::live;
    const auto snapshot = isLive ? nullptr : rig.stage().snapshotFor(display);
    const xcb_window_t window = tests::makeWindow(
        rig.connection().get(),
        {.frame = display, .depth = isLive ? PixelDepth::withAlpha : PixelDepth::opaque});
    rig.stage().windowMapped(window, display, snapshot);
    EXPECT_EQ(rig.stage().requestPaint(window), platform::x11::PaintPermission::granted);
    tests::fill(rig.connection().get(), window, display, overlayColor);
    rig.awaitPixel(700, 500, overlayColor);
    return window;
}

capture::StreamConfiguration regionOf(const Rect& rect) {
    capture::StreamConfiguration configuration;
    configuration.cursor = capture::CursorVisibility::hidden;
    configuration.scaling = capture::Scaling::none;
    configuration.sourceRect = rect;
    configuration.width = static_cast<std::int64_t>(rect.size.width);
    configuration.height = static_cast<std::int64_t>(rect.size.height);
    return configuration;
}

class DisplayCapture : public testing::TestWithParam<desktop::Compositor> {};
INSTANTIATE_TEST_SUITE_P(WithAndWithoutCompositor, DisplayCapture,
                         testing::Values(desktop::Compositor::none, desktop::Compositor::picom),
                         [](const auto& each) {
                             return each.param == desktop::Compositor::none ? "none" : "picom";
                         });

TEST_P(DisplayCapture, a_region_has_the_pixels_that_another_program_reads) {
    CaptureRig rig(with(GetParam()));
    const desktop::TestWindow below(rig.desktop().displayName(), wholeScreen());
    const auto image = rig.captureRegion({{37, 41}, {333, 111}});
    ASSERT_TRUE(image);
    const auto expected = desktop::readScreen(rig.desktop().client(), 37, 41, 333, 111);
    EXPECT_EQ(desktop::difference(expected, pictureOf(image.value())), "equal");
    EXPECT_EQ(expected, below.picture().cut(37, 41, 333, 111));
    EXPECT_EQ(image.value().alphaChannel(), base::AlphaChannel::none);
}

TEST_P(DisplayCapture, no_overlay_pixel_is_in_any_of_a_hundred_captures) {
    CaptureRig rig(with(GetParam()));
    const desktop::TestWindow below(rig.desktop().displayName(), wholeScreen());
    const auto expected = below.picture().cut(100, 100, 400, 300);
    int spoilt = 0;
    for (int index = 0; index < 100; ++index) {
        const xcb_window_t overlay = openOverlay(rig);
        const auto shown = rig.content().displays.at(0);
        if (index % 2 == 0) {
            rig.stage().windowClosed(overlay);
        }
        const auto image =
            rig.capture(capture::DisplayFilter{shown, {}}, regionOf({{100, 100}, {400, 300}}));
        ASSERT_TRUE(image);
        spoilt += pictureOf(image.value()) == expected ? 0 : 1;
        rig.stage().windowClosed(overlay);
        ASSERT_TRUE(rig.runUntil([&] { return !rig.stage().holds(overlay); }));
    }
    EXPECT_EQ(spoilt, 0);
}

TEST_P(DisplayCapture, what_lies_outside_of_the_display_is_opaque_black) {
    CaptureRig rig(with(GetParam()));
    const desktop::TestWindow below(rig.desktop().displayName(), wholeScreen());
    const base::Rect around{{-30, -20}, {900, 700}};
    // Memory that was never used is black anyway.
    EXPECT_TRUE(rig.captureRegion(around));
    EXPECT_TRUE(rig.captureRegion({{0, 0}, {800, 600}}));
    const auto image = rig.captureRegion(around);
    ASSERT_TRUE(image);
    const auto picture = pictureOf(image.value());
    EXPECT_EQ(picture.cut(30, 20, 800, 600), below.picture());
    for (const auto& outside : {picture.cut(0, 0, 900, 20), picture.cut(0, 20, 30, 600),
                                picture.cut(830, 20, 70, 600), picture.cut(0, 620, 900, 80)}) {
        EXPECT_EQ(static_cast<std::size_t>(
                      std::count(outside.pixels.begin(), outside.pixels.end(), black)),
                  outside.pixels.size());
    }
}

TEST_P(DisplayCapture, only_the_chosen_display_is_in_the_picture) {
    CaptureRig rig(with(GetParam()));
    rig.setLayout(
        DisplayLayout({{1, "A", {0, 0, 400, 600}, 1.0, DisplayRole::primary, nullptr},
                       {2, "B", {400, 0, 400, 600}, 2.0, DisplayRole::secondary, nullptr}}));
    const desktop::TestWindow below(rig.desktop().displayName(), wholeScreen());
    const auto displays = rig.content().displays;
    ASSERT_EQ(displays.size(), 2U);
    EXPECT_EQ(displays[1].frame.size, (base::Size{200, 300}));
    // From 10 points left of the second display: 20 black columns, then its first 60.
    auto configuration = regionOf({{-10, 5}, {40, 20}});
    configuration.width = 80;
    configuration.height = 40;
    const auto image = rig.capture(capture::DisplayFilter{displays[1], {}}, configuration);
    ASSERT_TRUE(image);
    const auto picture = pictureOf(image.value());
    EXPECT_EQ(picture.cut(20, 0, 60, 40), below.picture().cut(400, 10, 60, 40));
    EXPECT_EQ(picture.at(19, 20), black);
}

TEST_P(DisplayCapture, a_captured_picture_stays_as_it_is_while_others_are_taken) {
    CaptureRig rig(with(GetParam()));
    const desktop::TestWindow below(rig.desktop().displayName(), wholeScreen());
    const auto first = rig.captureRegion({{0, 0}, {200, 100}});
    const auto second = rig.captureRegion({{300, 200}, {200, 100}});
    ASSERT_TRUE(first);
    ASSERT_TRUE(second);
    EXPECT_EQ(pictureOf(first.value()), below.picture().cut(0, 0, 200, 100));
    EXPECT_EQ(pictureOf(second.value()), below.picture().cut(300, 200, 200, 100));
}

TEST_P(DisplayCapture, every_capture_takes_the_memory_that_the_last_one_gave_back) {
    CaptureRig rig(with(GetParam()));
    const desktop::TestWindow below(rig.desktop().displayName(), wholeScreen());
    constexpr std::size_t wholeSize = std::size_t{display.width} * display.height * 4;
    std::vector<std::uint8_t> whole(wholeSize);
    {
        const auto image = rig.captureRegion({{0, 0}, {display.width, display.height}});
        ASSERT_TRUE(image);
        std::copy_n(image.value().row(0), wholeSize, whole.begin());
    }
    for (const double height : {50.0, 40.0, 30.0}) {
        const auto image = rig.captureRegion({{0, 0}, {200, height}});
        ASSERT_TRUE(image);
        // Behind it is still what the first one has left; in fresh memory there would be nothing.
        const std::size_t rest = std::size_t{200} * 50 * 4;
        EXPECT_TRUE(std::equal(whole.begin() + rest, whole.end(), image.value().row(0) + rest));
    }
    EXPECT_EQ(desktop::resourcesOf(rig.desktop().client(), ::getpid()).at("ShmSeg"), 1U);
}

TEST_P(DisplayCapture, two_captures_in_flight_complete_each_once_while_the_overlay_closes) {
    CaptureRig rig(with(GetParam()));
    const desktop::TestWindow below(rig.desktop().displayName(), wholeScreen());
    const xcb_window_t overlay = openOverlay(rig);
    const auto shown = rig.content().displays.at(0);
    std::vector<base::Image> images;
    const auto keep = [&](const auto& image, const auto&) { images.push_back(image.value()); };
    rig.service().captureImage(capture::DisplayFilter{shown, {}}, regionOf({{0, 0}, {50, 60}}),
                               keep);
    rig.stage().windowClosed(overlay);
    rig.service().captureImage(capture::DisplayFilter{shown, {}}, regionOf({{500, 400}, {70, 80}}),
                               keep);
    ASSERT_TRUE(rig.runUntil([&] { return images.size() == 2; }));
    ASSERT_TRUE(rig.runUntil([&] { return !rig.stage().holds(overlay); }));
    rig.queue().advance(std::chrono::seconds{3});
    ASSERT_EQ(images.size(), 2U);
    EXPECT_EQ(pictureOf(images[0]), below.picture().cut(0, 0, 50, 60));
    EXPECT_EQ(pictureOf(images[1]), below.picture().cut(500, 400, 70, 80));
}

TEST_P(DisplayCapture, nothing_completes_after_the_service_has_ended) {
    CaptureRig rig(with(GetParam()));
    const desktop::TestWindow below(rig.desktop().displayName(), wholeScreen());
    const xcb_window_t overlay = openOverlay(rig);
    const auto shown = rig.content().displays.at(0);
    int completions = 0;
    rig.service().shareableContent(capture::DesktopWindows::excluded,
                                   capture::WindowVisibility::all,
                                   [&](const auto&, const auto&) { ++completions; });
    rig.service().captureImage(capture::DisplayFilter{shown, {}}, regionOf({{0, 0}, {50, 60}}),
                               [&](const auto&, const auto&) { ++completions; });
    rig.endService();
    rig.stage().windowClosed(overlay);
    EXPECT_TRUE(rig.runUntil([&] { return !rig.stage().holds(overlay); }));
    rig.queue().advance(std::chrono::seconds{3});
    EXPECT_EQ(completions, 0);
}

TEST_P(DisplayCapture, a_picture_may_outlive_the_service) {
    CaptureRig rig(with(GetParam()));
    const desktop::TestWindow below(rig.desktop().displayName(), wholeScreen());
    auto image = rig.captureRegion({{0, 0}, {200, 100}});
    ASSERT_TRUE(image);
    rig.endService();
    EXPECT_EQ(pictureOf(image.value()), below.picture().cut(0, 0, 200, 100));
}

TEST(FrozenDisplayCapture, shows_the_screen_as_it_was_when_the_overlay_opened) {
    CaptureRig rig(with(desktop::Compositor::none));
    const xcb_window_t below =
        tests::makeWindow(rig.desktop().client().get(), {.frame = display, .background = 0x112233});
    rig.awaitPixel(5, 5, 0xff112233);
    const xcb_window_t overlay = openOverlay(rig);
    const auto shown = rig.content().displays.at(0);
    rig.stage().windowClosed(overlay);
    // A round trip: what is painted under an overlay that is not gone yet is never seen.
    static_cast<void>(rig.connection().serverTime());
    tests::fill(rig.desktop().client().get(), below, display, 0x445566);
    rig.awaitPixel(5, 5, 0xff445566);
    // Long after the stage has let the snapshot go.
    rig.queue().advance(std::chrono::seconds{5});
    const auto image = rig.capture(capture::DisplayFilter{shown, {}}, regionOf({{0, 0}, {9, 9}}));
    ASSERT_TRUE(image);
    EXPECT_EQ(pictureOf(image.value()).at(4, 4), 0xff112233);
}

TEST(FrozenDisplayCapture, an_overlay_that_came_after_the_list_is_not_in_the_picture) {
    CaptureRig rig(with(desktop::Compositor::none));
    const desktop::TestWindow below(rig.desktop().displayName(), wholeScreen());
    const auto shown = rig.content().displays.at(0);
    openOverlay(rig);
    const auto image =
        rig.capture(capture::DisplayFilter{shown, {}}, regionOf({{10, 10}, {50, 50}}));
    ASSERT_TRUE(image);
    EXPECT_EQ(pictureOf(image.value()), below.picture().cut(10, 10, 50, 50));
}

/// Whether what may wait until a picture is on the clipboard waits now.
bool isHeld(CaptureRig& rig) {
    const auto isSent = std::make_shared<bool>(false);
    rig.connection().lateRequests().add([isSent] { *isSent = true; });
    return !*isSent;
}

TEST(FrozenDisplayCapture, keeps_the_overlay_s_end_back_until_the_picture_is_delivered_and_pasted) {
    CaptureRig rig(with(desktop::Compositor::none));
    const xcb_window_t overlay = openOverlay(rig);
    const auto shown = rig.content().displays.at(0);
    bool isDelivered = false;
    rig.service().captureImage(capture::DisplayFilter{shown, {}}, regionOf({{0, 0}, {9, 9}}),
                               [&](const auto&, const auto&) {
                                   rig.queue().post([&] {
                                       EXPECT_TRUE(isHeld(rig))
                                           << "in the turn in which the picture is delivered";
                                       isDelivered = true;
                                   });
                               });
    EXPECT_TRUE(isHeld(rig));
    rig.stage().windowClosed(overlay);
    EXPECT_TRUE(rig.runUntil([&] { return isDelivered; }));
    const desktop::XClient client(rig.desktop().displayName());
    const auto isThere = [&] {
        return desktop::Reply<xcb_get_geometry_reply_t>(xcb_get_geometry_reply(
                   client.get(), xcb_get_geometry(client.get(), overlay), nullptr)) != nullptr;
    };
    rig.queue().runAll();
    EXPECT_TRUE(isHeld(rig)) << "whoever pastes at once is answered first";
    (void)rig.connection().serverTime();
    EXPECT_TRUE(isThere());
    rig.queue().advance(std::chrono::milliseconds{20});
    EXPECT_FALSE(isHeld(rig));
    (void)rig.connection().serverTime();
    EXPECT_FALSE(isThere());
    rig.queue().advance(std::chrono::milliseconds{250});
}

TEST(DisplayCaptureService, gives_the_colour_space_of_the_display_whose_pixels_it_gives) {
    CaptureRig rig(with(desktop::Compositor::none));
    const auto space =
        std::make_shared<const base::ColorSpace>(base::ColorSpace{"Wide", {1, 2, 3}});
    const auto colorSpaceNamed = [&](std::optional<std::string> name) {
        auto configuration = regionOf({{0, 0}, {9, 9}});
        configuration.colorSpaceName = std::move(name);
        const auto shown = rig.content().displays.at(0);
        return rig.capture(capture::DisplayFilter{shown, {}}, configuration).value().colorSpace();
    };
    rig.setLayout(DisplayLayout({{1, "A", display, 1.0, DisplayRole::primary, space}}));
    EXPECT_EQ(colorSpaceNamed("Wide"), space);
    // That of the display on which a selection began that is taken from this one.
    EXPECT_EQ(colorSpaceNamed("Narrow"), space);
    EXPECT_EQ(colorSpaceNamed(std::nullopt), space);
    rig.setLayout(DisplayLayout({{1, "A", display, 1.0, DisplayRole::primary, nullptr}}));
    EXPECT_EQ(colorSpaceNamed("Wide"), nullptr);
}

TEST(DisplayCaptureService, refuses_a_region_without_pixels_with_a_sentence) {
    CaptureRig rig(with(desktop::Compositor::none));
    const auto shown = rig.content().displays.at(0);
    for (const double size : {0.0, -5.0, 1e12}) {
        const auto image =
            rig.capture(capture::DisplayFilter{shown, {}}, regionOf({{0, 0}, {size, 10}}));
        ASSERT_FALSE(image);
        EXPECT_FALSE(image.error().sentence.empty());
    }
    EXPECT_FALSE(rig.capture(capture::DisplayFilter{}, regionOf({{0, 0}, {10, 10}})));
}

}  // namespace
