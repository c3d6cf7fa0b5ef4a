#include "platform/x11/capture_region.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using platform::x11::captureRegion;
using platform::x11::NativeDisplay;
using platform::x11::NativeRect;

NativeDisplay displayOf(double scale) {
    return {1, "A", {100, 50, 3000, 1500}, scale, platform::x11::DisplayRole::primary, nullptr};
}

capture::StreamConfiguration configurationOf(const base::Rect& source, std::int64_t width,
                                             std::int64_t height) {
    capture::StreamConfiguration configuration;
    configuration.sourceRect = source;
    configuration.width = width;
    configuration.height = height;
    return configuration;
}

TEST(CaptureRegion, begins_at_the_pixel_that_holds_the_corner) {
    EXPECT_EQ(captureRegion(displayOf(2), configurationOf({{10.4, 20.6}, {5, 5}}, 10, 11)),
              (NativeRect{100 + 20, 50 + 41, 10, 11}));
    EXPECT_EQ(captureRegion(displayOf(1), configurationOf({{-0.5, -3}, {5, 5}}, 5, 5)),
              (NativeRect{99, 47, 5, 5}));
}

TEST(CaptureRegion, finds_the_pixel_again_that_a_division_by_the_scale_came_from) {
    for (const double scale : {1.25, 1.5, 1.75, 2.2, 3.0}) {
        for (int pixel = 0; pixel < 3000; ++pixel) {
            const double points = pixel / scale;
            const auto region =
                captureRegion(displayOf(scale), configurationOf({{points, 0}, {1, 1}}, 1, 1));
            ASSERT_EQ(region->x, 100 + pixel) << scale;
        }
    }
}

TEST(CaptureRegion, is_the_whole_display_without_a_source_rectangle) {
    EXPECT_EQ(captureRegion(displayOf(1.5), {}), (NativeRect{100, 50, 3000, 1500}));
}

TEST(CaptureRegion, is_none_for_numbers_that_no_screen_has) {
    const double infinity = std::numeric_limits<double>::infinity();
    const double none = std::numeric_limits<double>::quiet_NaN();
    for (const double bad : {infinity, -infinity, none, 1e9}) {
        EXPECT_EQ(captureRegion(displayOf(1), configurationOf({{bad, 0}, {1, 1}}, 1, 1)),
                  std::nullopt);
    }
    EXPECT_EQ(captureRegion(displayOf(1), configurationOf({{0, 0}, {1, 1}}, 0, 1)), std::nullopt);
    EXPECT_EQ(captureRegion(displayOf(1), configurationOf({{0, 0}, {1, 1}}, 1, 1LL << 40)),
              std::nullopt);
}

}  // namespace
