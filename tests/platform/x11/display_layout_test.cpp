#include "platform/x11/display_layout.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

using base::Point;
using base::Rect;
using platform::x11::DisplayLayout;
using platform::x11::DisplayRole;
using platform::x11::NativeDisplay;
using platform::x11::NativePoint;
using platform::x11::NativeRect;

namespace {

NativeDisplay display(base::DisplayID id, NativeRect native, double scale,
                      DisplayRole role = DisplayRole::secondary) {
    return {id, "DISPLAY-" + std::to_string(id), native, scale, role, nullptr};
}

/// Displays side by side with random sizes, scales, gaps and offsets, the primary anywhere.
DisplayLayout randomLayout(std::mt19937& random) {
    constexpr std::array scales{1.0, 1.25, 1.5, 1.75, 2.0, 3.0};
    const auto from = [&](int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(random);
    };
    std::vector<NativeDisplay> displays;
    int x = from(-3000, 500);
    const int count = from(1, 4);
    const int primary = from(0, count - 1);
    for (int i = 0; i < count; ++i) {
        const NativeRect native{x, from(-1500, 1500), from(600, 4000), from(400, 2500)};
        displays.push_back(
            display(static_cast<base::DisplayID>(i + 1), native,
                    scales[static_cast<std::size_t>(from(0, static_cast<int>(scales.size()) - 1))],
                    i == primary ? DisplayRole::primary : DisplayRole::secondary));
        x += native.width + from(0, 3) * 100;
    }
    return DisplayLayout(std::move(displays));
}

NativePoint randomPixel(const NativeRect& rect, std::mt19937& random) {
    return {std::uniform_int_distribution<int>(rect.x, rect.x + rect.width - 1)(random),
            std::uniform_int_distribution<int>(rect.y, rect.y + rect.height - 1)(random)};
}

}  // namespace

TEST(DisplayLayout, the_primary_comes_first_and_the_others_keep_their_order) {
    const DisplayLayout layout({display(1, {0, 0, 100, 100}, 1), display(2, {100, 0, 100, 100}, 1),
                                display(3, {200, 0, 100, 100}, 1, DisplayRole::primary)});
    ASSERT_EQ(layout.displays().size(), 3U);
    EXPECT_EQ(layout.displays()[0].id, 3U);
    EXPECT_EQ(layout.displays()[1].id, 1U);
    EXPECT_EQ(layout.displays()[2].id, 2U);
}

TEST(DisplayLayout, without_a_primary_the_first_display_is_it) {
    const DisplayLayout layout(
        {display(7, {50, 60, 100, 100}, 1), display(8, {150, 60, 100, 100}, 1)});
    EXPECT_EQ(layout.displays()[0].role, DisplayRole::primary);
    EXPECT_EQ(layout.displays()[1].role, DisplayRole::secondary);
    EXPECT_EQ(layout.screens()[0].frame, (Rect{{0, 0}, {100, 100}}));
}

TEST(DisplayLayout, the_primary_is_the_origin_of_both_spaces_wherever_its_pixels_are) {
    const DisplayLayout layout({display(1, {0, 0, 1920, 1080}, 1),
                                display(2, {1920, 200, 2560, 1440}, 2, DisplayRole::primary)});
    EXPECT_EQ(layout.screens()[0].frame, (Rect{{0, 0}, {1280, 720}}));
    // The other one keeps its native origin: 1920 to the left, 200 pixels higher.
    EXPECT_EQ(layout.topLeftFrame(layout.displays()[1]), (Rect{{-1920, -200}, {1920, 1080}}));
    EXPECT_EQ(layout.screens()[1].frame, (Rect{{-1920, 720 + 200 - 1080}, {1920, 1080}}));
}

TEST(DisplayLayout, lengths_inside_of_a_display_are_divided_by_its_scale_and_its_origin_is_not) {
    const DisplayLayout layout({display(1, {0, 0, 1920, 1080}, 1, DisplayRole::primary),
                                display(2, {1920, 100, 1280, 1024}, 2)});
    EXPECT_EQ(layout.topLeftFromNative(NativePoint{1920 + 10, 100 + 20}), (Point{1925, 110}));
    EXPECT_EQ(layout.screens()[1].frame, (Rect{{1920, 1080 - (100 + 512)}, {640, 512}}));
}

TEST(DisplayLayout, a_window_is_converted_whole_by_the_display_that_holds_its_centre) {
    const DisplayLayout layout({display(1, {0, 0, 1000, 1000}, 1, DisplayRole::primary),
                                display(2, {1000, 0, 1000, 1000}, 2)});
    EXPECT_EQ(layout.topLeftFromNative(NativeRect{850, 10, 200, 100}),
              (Rect{{850, 10}, {200, 100}}));
    EXPECT_EQ(layout.topLeftFromNative(NativeRect{950, 10, 200, 100}), (Rect{{975, 5}, {100, 50}}));
}

TEST(DisplayLayout, a_pixel_in_a_gap_belongs_to_the_nearest_display) {
    const DisplayLayout layout(
        {display(1, {0, 0, 100, 100}, 1, DisplayRole::primary), display(2, {300, 0, 100, 100}, 1)});
    EXPECT_EQ(layout.displayAt({180, 50})->id, 1U);
    EXPECT_EQ(layout.displayAt({220, 50})->id, 2U);
    EXPECT_EQ(layout.displayAt({100, 50})->id, 1U);
}

TEST(DisplayLayout, without_displays_there_is_nothing_to_ask) {
    const DisplayLayout layout;
    EXPECT_TRUE(layout.screens().empty());
    EXPECT_EQ(layout.displayAt({0, 0}), nullptr);
    EXPECT_EQ(layout.find(1), nullptr);
    EXPECT_EQ(layout.topLeftFromNative(NativePoint{3, 4}), (Point{3, 4}));
}

TEST(DisplayLayout, a_view_rectangle_counts_from_the_bottom_of_its_display) {
    const NativeDisplay two = display(2, {1920, 100, 1280, 1024}, 2);
    EXPECT_EQ(DisplayLayout::nativeFromView(two, {{10, 12}, {20, 30}}),
              (NativeRect{1940, 100 + 1024 - 84, 40, 60}));
}

TEST(DisplayLayoutProperty, the_whole_view_is_exactly_the_pixels_of_the_display) {
    std::mt19937 random(1);
    for (int round = 0; round < 500; ++round) {
        const DisplayLayout layout = randomLayout(random);
        const auto screens = layout.screens();
        for (std::size_t i = 0; i < screens.size(); ++i) {
            const NativeDisplay& native = layout.displays()[i];
            EXPECT_EQ(DisplayLayout::nativeFromView(native, {{0, 0}, screens[i].frame.size}),
                      native.native);
            EXPECT_EQ(layout.nativeFromScreen(native, screens[i].frame), native.native);
        }
    }
}

TEST(DisplayLayoutProperty, a_pixel_goes_to_points_and_back) {
    std::mt19937 random(2);
    for (int round = 0; round < 500; ++round) {
        const DisplayLayout layout = randomLayout(random);
        for (const NativeDisplay& native : layout.displays()) {
            const NativePoint pixel = randomPixel(native.native, random);
            ASSERT_EQ(layout.displayAt(pixel), &native);
            const Point point = layout.topLeftFromNative(pixel);
            const Rect frame = layout.topLeftFrame(native);
            EXPECT_TRUE(frame.contains(point));
            const NativeRect back = DisplayLayout::nativeFromDisplayTopLeft(
                native, {{point.x - frame.minX(), point.y - frame.minY()}, {0, 0}});
            EXPECT_EQ((NativePoint{back.x, back.y}), pixel);
        }
    }
}

TEST(DisplayLayoutProperty, a_window_inside_of_a_display_goes_to_screen_space_and_back) {
    std::mt19937 random(3);
    for (int round = 0; round < 500; ++round) {
        const DisplayLayout layout = randomLayout(random);
        for (const NativeDisplay& native : layout.displays()) {
            const NativePoint first = randomPixel(native.native, random);
            const NativePoint second = randomPixel(native.native, random);
            const NativeRect window{std::min(first.x, second.x), std::min(first.y, second.y),
                                    std::abs(first.x - second.x), std::abs(first.y - second.y)};
            Rect rect = layout.topLeftFromNative(window);
            rect.origin.y = layout.primaryHeight() - rect.maxY();
            EXPECT_EQ(layout.nativeFromScreen(native, rect), window);
        }
    }
}

TEST(DisplayLayoutProperty, the_flip_of_a_frame_uses_the_height_of_the_primary) {
    std::mt19937 random(4);
    for (int round = 0; round < 500; ++round) {
        const DisplayLayout layout = randomLayout(random);
        for (const NativeDisplay& native : layout.displays()) {
            const Rect topLeft = layout.topLeftFrame(native);
            const Rect screen = layout.screenFrame(native);
            EXPECT_EQ(screen.minX(), topLeft.minX());
            EXPECT_NEAR(screen.minY() + topLeft.maxY(), layout.primaryHeight(), 1e-9);
            EXPECT_EQ(screen.size, topLeft.size);
        }
    }
}
