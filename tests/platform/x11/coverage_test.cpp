#include "platform/x11/coverage.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using platform::x11::pixelCoverage;
using platform::x11::RoundedBox;
using platform::x11::spanCoverage;

namespace {

bool isInside(const RoundedBox& box, double x, double y) {
    if (x < box.left || x >= box.right || y < box.top || y >= box.bottom) {
        return false;
    }
    const double dx = std::max({box.left + box.radius - x, x - (box.right - box.radius), 0.0});
    const double dy = std::max({box.top + box.radius - y, y - (box.bottom - box.radius), 0.0});
    return dx * dx + dy * dy <= box.radius * box.radius || dx == 0 || dy == 0;
}

double sampledCoverage(const RoundedBox& box, int x, int y) {
    constexpr int samples = 64;
    int inside = 0;
    for (int i = 0; i < samples * samples; ++i) {
        const double dx = (i % samples + 0.5) / samples;
        const double dy = (i / samples + 0.5) / samples;
        inside += isInside(box, x + dx, y + dy) ? 1 : 0;
    }
    return static_cast<double>(inside) / (samples * samples);
}

}  // namespace

TEST(Coverage, a_stretch_counts_only_what_lies_in_its_pixel) {
    EXPECT_DOUBLE_EQ(spanCoverage(1.25, 9, 1), 0.75);
    EXPECT_DOUBLE_EQ(spanCoverage(1.25, 9, 5), 1);
    EXPECT_DOUBLE_EQ(spanCoverage(1.25, 1.5, 1), 0.25);
    EXPECT_DOUBLE_EQ(spanCoverage(1.25, 9, 0), 0);
    EXPECT_DOUBLE_EQ(spanCoverage(9, 1, 5), 0);
}

TEST(Coverage, a_square_corner_has_the_product_of_both_overlaps) {
    EXPECT_DOUBLE_EQ(pixelCoverage({1.5, 2.75, 10, 10, 0}, 1, 2), 0.125);
}

TEST(Coverage, the_whole_of_a_disc_is_pi_times_the_square_of_its_radius) {
    const RoundedBox disc{0.3, 0.7, 12.3, 12.7, 6};
    double area = 0;
    for (int y = -1; y < 15; ++y) {
        for (int x = -1; x < 15; ++x) {
            area += pixelCoverage(disc, x, y);
        }
    }
    EXPECT_NEAR(area, 3.14159265358979 * 36, 1e-9);
}

TEST(CoverageProperty, the_exact_area_agrees_with_many_samples) {
    std::mt19937 random(5);
    const auto from = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    for (int round = 0; round < 60; ++round) {
        RoundedBox box{from(0, 4), from(0, 4), from(4.5, 14), from(4.5, 14), 0};
        box.radius = from(0, std::min(box.right - box.left, box.bottom - box.top) / 2);
        for (int y = -1; y < 15; ++y) {
            for (int x = -1; x < 15; ++x) {
                ASSERT_NEAR(pixelCoverage(box, x, y), sampledCoverage(box, x, y), 0.02)
                    << x << " " << y << " radius " << box.radius;
            }
        }
    }
}
