#include "base/geometry.h"

#include <gtest/gtest.h>

using base::intersection;
using base::Rect;
using base::unionOf;

TEST(Rect, containment_is_half_open) {
    const Rect rect{{10, 20}, {30, 40}};
    EXPECT_TRUE(rect.contains({10, 20}));
    EXPECT_TRUE(rect.contains({39.9, 59.9}));
    EXPECT_FALSE(rect.contains({40, 30}));
    EXPECT_FALSE(rect.contains({20, 60}));
}

TEST(Rect, the_intersection_of_rectangles_that_only_touch_is_empty) {
    EXPECT_EQ(intersection(Rect{{0, 0}, {10, 10}}, {{10, 0}, {10, 10}}), Rect{});
}

TEST(Rect, the_intersection_is_the_common_part) {
    EXPECT_EQ(intersection(Rect{{0, 0}, {10, 10}}, {{5, -5}, {10, 10}}), (Rect{{5, 0}, {5, 5}}));
}

TEST(Rect, the_union_ignores_an_empty_rectangle) {
    EXPECT_EQ(unionOf(Rect{}, {{5, 5}, {1, 1}}), (Rect{{5, 5}, {1, 1}}));
    EXPECT_EQ(unionOf(Rect{{0, 0}, {1, 1}}, {{5, 5}, {1, 1}}), (Rect{{0, 0}, {6, 6}}));
}
