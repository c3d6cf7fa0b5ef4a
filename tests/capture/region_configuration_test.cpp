#include "capture/region_configuration.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace {

using base::Rect;
using capture::ShareableDisplay;
using capture::ShareableWindow;
using testing::ElementsAre;
using testing::IsEmpty;

const std::vector<ShareableDisplay> twoDisplays{{1, {{0, 0}, {1920, 1080}}, 1.0, nullptr},
                                                {2, {{1920, 56}, {1280, 1024}}, 2.0, nullptr}};

base::DisplayID chosen(const Rect& screenRect) {
    const auto display = capture::displayForSelection(twoDisplays, screenRect);
    return display ? display->displayID : 0;
}

TEST(DisplayForSelection, is_the_display_that_the_selection_lies_on) {
    EXPECT_EQ(chosen({{100, 100}, {50, 50}}), 1U);
    EXPECT_EQ(chosen({{2000, 100}, {50, 50}}), 2U);
}

TEST(DisplayForSelection, across_a_boundary_is_the_first_listed_one_however_little_it_holds) {
    EXPECT_EQ(chosen({{1919, 100}, {500, 50}}), 1U);
}

TEST(DisplayForSelection, that_only_touches_the_selection_does_not_count) {
    EXPECT_EQ(chosen({{1920, 100}, {50, 50}}), 2U);
    EXPECT_EQ(chosen({{-50, 100}, {50, 50}}), 0U);
}

TEST(DisplayForSelection, is_none_where_there_is_no_display) {
    EXPECT_EQ(chosen({{5000, 5000}, {50, 50}}), 0U);
    EXPECT_EQ(capture::displayForSelection({}, {{0, 0}, {10, 10}}).has_value(), false);
}

TEST(SourceRect, is_flipped_inside_the_display) {
    EXPECT_EQ(capture::sourceRect({{10, 20}, {100, 50}}, {{0, 0}, {1920, 1080}}),
              (Rect{{10, 1010}, {100, 50}}));
    EXPECT_EQ(capture::sourceRect({{2000, 100}, {100, 50}}, {{1920, 56}, {1280, 1024}}),
              (Rect{{80, 930}, {100, 50}}));
}

TEST(SourceRect, is_not_clipped_to_the_display) {
    EXPECT_EQ(capture::sourceRect({{-10, -20}, {3000, 2000}}, {{0, 0}, {1920, 1080}}),
              (Rect{{-10, -900}, {3000, 2000}}));
}

TEST(SourceRect, keeps_the_distances_to_the_edges_of_the_display) {
    std::mt19937 generator(7);
    std::uniform_int_distribution<int> eighths(-40000, 40000);
    const auto number = [&] { return eighths(generator) / 8.0; };
    for (int round = 0; round < 1000; ++round) {
        const Rect frame{{number(), number()}, {std::abs(number()), std::abs(number())}};
        const Rect screenRect{{number(), number()}, {std::abs(number()), std::abs(number())}};
        const Rect source = capture::sourceRect(screenRect, frame);
        EXPECT_EQ(source.size, screenRect.size);
        EXPECT_EQ(source.minX(), screenRect.minX() - frame.minX());
        EXPECT_EQ(source.minY(), frame.maxY() - screenRect.maxY());
    }
}

ShareableWindow window(capture::WindowID id, int layer, std::optional<std::string> owner) {
    return {id, {}, layer, capture::RunningApplication{std::move(owner), 1}, nullptr};
}

std::vector<capture::WindowID> excluded(const std::vector<ShareableWindow>& windows,
                                        const std::optional<std::string>& mainBundleIdentifier) {
    std::vector<capture::WindowID> ids;
    for (const auto& kept : capture::windowsToExclude(windows, mainBundleIdentifier)) {
        ids.push_back(kept.windowID);
    }
    return ids;
}

TEST(WindowsToExclude, are_our_own_outside_of_the_ordinary_layer) {
    EXPECT_THAT(excluded({window(1, 1000, "ours"), window(2, 0, "ours"), window(3, 1000, "theirs"),
                          window(4, -1, "ours"), window(5, 25, std::nullopt)},
                         "ours"),
                ElementsAre(1, 4));
}

TEST(WindowsToExclude, a_window_without_an_owner_is_ours_only_when_we_have_no_identifier) {
    const std::vector<ShareableWindow> windows{{1, {}, 25, std::nullopt, nullptr},
                                               window(2, 25, std::nullopt),
                                               window(3, 25, "x"),
                                               {4, {}, 0, std::nullopt, nullptr}};
    EXPECT_THAT(excluded(windows, "ours"), IsEmpty());
    EXPECT_THAT(excluded(windows, std::nullopt), ElementsAre(1, 2));
}

TEST(RegionConfiguration, the_size_in_pixels_is_the_size_in_points_times_the_scale) {
    const auto configuration = capture::regionConfiguration({{1, 2}, {100, 50}}, 2.0, "Display P3");
    EXPECT_EQ(configuration.sourceRect, (Rect{{1, 2}, {100, 50}}));
    EXPECT_EQ(configuration.width, 200);
    EXPECT_EQ(configuration.height, 100);
    EXPECT_EQ(configuration.cursor, capture::CursorVisibility::hidden);
    EXPECT_EQ(configuration.scaling, capture::Scaling::none);
    EXPECT_EQ(static_cast<std::uint32_t>(configuration.pixelFormat), 0x42475241U);
    EXPECT_EQ(configuration.colorSpaceName, "Display P3");
}

TEST(RegionConfiguration, fractions_of_a_pixel_are_cut_off) {
    const auto configuration =
        capture::regionConfiguration({{}, {100.9, 33.4}}, 1.25, std::nullopt);
    EXPECT_EQ(configuration.width, 126);
    EXPECT_EQ(configuration.height, 41);
    EXPECT_EQ(configuration.colorSpaceName, std::nullopt);
}

TEST(RegionConfiguration, a_length_of_whole_pixels_that_was_divided_by_the_scale_is_whole_again) {
    for (const double scale : {1.1, 1.25, 4.0 / 3, 1.5, 1.75, 2.6, 3.0}) {
        for (int left = 0; left < 300; ++left) {
            for (int width = 1; width < 60; ++width) {
                const double points = (left + width) / scale - left / scale;
                const auto configuration =
                    capture::regionConfiguration({{}, {points, 10}}, scale, std::nullopt);
                ASSERT_EQ(configuration.width, width) << left << " at " << scale;
            }
        }
    }
}

TEST(RegionConfigurationDeathTest, a_size_that_is_no_number_of_pixels_is_fatal) {
    const auto configure = [](double width) {
        (void)capture::regionConfiguration({{}, {width, 10}}, 2.0, std::nullopt);
    };
    EXPECT_DEATH(configure(std::numeric_limits<double>::infinity()), "out of range");
    EXPECT_DEATH(configure(std::numeric_limits<double>::quiet_NaN()), "out of range");
    EXPECT_DEATH(configure(1e19), "out of range");
}

}  // namespace
