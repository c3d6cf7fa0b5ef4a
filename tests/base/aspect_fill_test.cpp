#include "base/aspect_fill.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using base::aspectFillCrop;
using base::Rect;

TEST(AspectFill, a_view_of_the_same_proportions_shows_everything) {
    EXPECT_EQ(aspectFillCrop({1280, 720}, 1, {640, 360}), (Rect{{0, 0}, {1280, 720}}));
}

TEST(AspectFill, a_narrower_view_loses_the_sides_alike) {
    EXPECT_EQ(aspectFillCrop({1280, 720}, 1, {250, 250}), (Rect{{280, 0}, {720, 720}}));
}

TEST(AspectFill, a_wider_view_loses_the_top_and_the_bottom_alike) {
    EXPECT_EQ(aspectFillCrop({1280, 720}, 1, {1280, 360}), (Rect{{0, 180}, {1280, 360}}));
}

TEST(AspectFill, pixels_that_are_not_square_count_by_their_shape) {
    // 720 x 480 pixels that are shown 1440 wide.
    EXPECT_EQ(aspectFillCrop({720, 480}, 2, {480, 480}), (Rect{{240, 0}, {240, 480}}));
}

TEST(AspectFill, a_shape_that_is_no_number_is_square) {
    for (const double shape : {0.0, -1.0, std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(aspectFillCrop({100, 100}, shape, {50, 50}), (Rect{{0, 0}, {100, 100}}));
    }
}

TEST(AspectFill, an_empty_size_shows_nothing) {
    EXPECT_TRUE(aspectFillCrop({0, 720}, 1, {10, 10}).isEmpty());
    EXPECT_TRUE(aspectFillCrop({1280, 720}, 1, {10, 0}).isEmpty());
}

TEST(AspectFill, what_is_shown_is_inside_the_picture_and_as_wide_or_as_high) {
    for (const int width : {1, 2, 3, 17, 404, 8192}) {
        for (const int height : {1, 5, 250, 8192}) {
            const Rect part = aspectFillCrop({1280, 720}, 1, {width, height});
            EXPECT_GE(part.minX(), 0);
            EXPECT_GE(part.minY(), 0);
            EXPECT_FALSE(part.isEmpty());
            EXPECT_TRUE(part.size.width == 1280 || part.size.height == 720);
            EXPECT_NEAR(part.midX(), 640, 1e-9);
            EXPECT_NEAR(part.midY(), 360, 1e-9);
            EXPECT_NEAR(part.size.width / part.size.height / width * height, 1, 1e-9);
        }
    }
}

}  // namespace
