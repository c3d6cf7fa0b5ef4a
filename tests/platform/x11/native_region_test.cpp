#include "platform/x11/native_region.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using platform::x11::NativeRect;
using platform::x11::NativeRegion;

TEST(NativeRegion, is_empty_when_all_of_it_was_taken_away) {
    NativeRegion region({0, 0, 10, 10});
    region.subtract({0, 0, 10, 4});
    EXPECT_FALSE(region.isEmpty());
    region.subtract({-5, 4, 50, 50});
    EXPECT_TRUE(region.isEmpty());
}

TEST(NativeRegion, of_an_empty_rectangle_is_empty) {
    EXPECT_TRUE(NativeRegion({3, 3, 0, 5}).isEmpty());
    EXPECT_TRUE(NativeRegion().isEmpty());
}

TEST(NativeRegion, of_two_rectangles_needs_both_taken_away) {
    NativeRegion region(std::vector<NativeRect>{{0, 0, 1, 1}, {9, 9, 1, 1}});
    region.subtract({0, 0, 9, 9});
    EXPECT_FALSE(region.isEmpty());
    region.subtract({9, 9, 1, 1});
    EXPECT_TRUE(region.isEmpty());
}

TEST(NativeRegion, intersections_are_half_open) {
    EXPECT_TRUE(intersection(NativeRect{0, 0, 4, 4}, NativeRect{4, 0, 4, 4}).isEmpty());
    EXPECT_EQ(intersection(NativeRect{0, 0, 4, 4}, NativeRect{3, -1, 4, 4}),
              (NativeRect{3, 0, 1, 3}));
}

TEST(NativeRegion, holds_a_pixel_exactly_when_no_rectangle_took_it) {
    constexpr int side = 12;
    std::mt19937 random(7);
    std::uniform_int_distribution<int> place(-3, side);
    std::uniform_int_distribution<int> length(0, side);
    for (int round = 0; round < 200; ++round) {
        NativeRegion region({0, 0, side, side});
        std::vector<bool> isLeft(side * side, true);
        for (int step = 0; step < 5; ++step) {
            const NativeRect taken{place(random), place(random), length(random), length(random)};
            region.subtract(taken);
            for (int index = 0; index < side * side; ++index) {
                if (taken.contains({index % side, index / side})) {
                    isLeft[static_cast<std::size_t>(index)] = false;
                }
            }
        }
        for (int index = 0; index < side * side; ++index) {
            EXPECT_EQ(region.intersects({index % side, index / side, 1, 1}),
                      isLeft[static_cast<std::size_t>(index)]);
        }
    }
}

}  // namespace
