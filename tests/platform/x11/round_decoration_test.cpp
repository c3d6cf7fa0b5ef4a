#include "platform/x11/round_decoration.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace {

using platform::x11::Canvas;
using platform::x11::cutRoundDecoration;
using platform::x11::decorationRadius;
using platform::x11::NativeRect;

constexpr int barHeight = 24;
constexpr std::uint8_t barLevel = 240;

/// A frame of 60 x 40 pixels with a margin of 5, over a screen in which every pixel is different.
class RoundDecoration : public testing::Test {
  protected:
    RoundDecoration() : bytes(std::size_t{70} * 50 * 4, 255) {
        for (int y = 0; y < 50; ++y) {
            for (int x = 0; x < 70; ++x) {
                const auto level = static_cast<std::uint8_t>((x * 37 + y * 91) % 200);
                std::fill(canvas.row(y) + x * 4, canvas.row(y) + x * 4 + 3, level);
            }
        }
    }
    std::uint8_t* at(int x, int y) { return canvas.row(frame.y + y) + (frame.x + x) * 4; }
    /// Blends a title bar with round corners over the screen, as a compositor does.
    void paintBar(double radius) {
        for (int y = 0; y < barHeight; ++y) {
            for (int x = 0; x < frame.width; ++x) {
                const int fromSide = std::min(x, frame.width - 1 - x);
                const double across = std::max(radius - fromSide - 0.5, 0.0);
                const double down = std::max(radius - y - 0.5, 0.0);
                const double alpha = std::clamp(radius - std::hypot(across, down) + 0.5, 0.0, 1.0);
                for (int channel = 0; channel < 3; ++channel) {
                    auto& level = at(x, y)[channel];
                    level = static_cast<std::uint8_t>(
                        std::lround(alpha * barLevel + (1 - alpha) * level));
                }
            }
        }
    }

    NativeRect frame{5, 5, 60, 40};
    std::vector<std::uint8_t> bytes;
    Canvas canvas{70, 50, bytes.data(), nullptr};
};

TEST_F(RoundDecoration, has_the_radius_with_which_it_was_painted) {
    const auto screen = bytes;
    for (const double radius : {3.0, 4.0, 5.5, 8.0, 12.0, 16.0}) {
        bytes = screen;
        canvas.pixels = bytes.data();
        paintBar(radius);
        const auto found = decorationRadius(canvas, frame, barHeight);
        ASSERT_TRUE(found) << radius;
        EXPECT_NEAR(*found, radius, 1.0);
    }
}

TEST_F(RoundDecoration, keeps_nothing_of_what_is_behind_it) {
    paintBar(6);
    cutRoundDecoration(canvas, frame, decorationRadius(canvas, frame, barHeight).value());
    for (int y = 0; y < barHeight; ++y) {
        for (int x = 0; x < frame.width; ++x) {
            const std::uint8_t* const pixel = at(x, y);
            EXPECT_NEAR(pixel[0], barLevel * pixel[3] / 255, 4) << x << ", " << y;
        }
    }
    EXPECT_EQ(at(0, 0)[3], 0);
    EXPECT_EQ(at(59, 0)[3], 0);
    EXPECT_GT(at(2, 1)[3], 0);
    EXPECT_LT(at(2, 1)[3], 255);
    EXPECT_EQ(at(8, 0)[3], 255);
    EXPECT_EQ(at(0, 39)[3], 255);
}

TEST_F(RoundDecoration, that_is_square_is_left_alone) {
    paintBar(0);
    EXPECT_FALSE(decorationRadius(canvas, frame, barHeight));
}

TEST_F(RoundDecoration, of_many_colours_is_left_alone) {
    EXPECT_FALSE(decorationRadius(canvas, frame, barHeight));
}

TEST_F(RoundDecoration, with_an_outline_of_another_colour_is_left_alone) {
    paintBar(0);
    for (int x = 0; x < frame.width; ++x) {
        std::fill(at(x, 0), at(x, 0) + 3, std::uint8_t{20});
    }
    for (int y = 0; y < frame.height; ++y) {
        std::fill(at(0, y), at(0, y) + 3, std::uint8_t{20});
        std::fill(at(59, y), at(59, y) + 3, std::uint8_t{20});
    }
    EXPECT_FALSE(decorationRadius(canvas, frame, barHeight));
}

TEST_F(RoundDecoration, of_a_tiny_window_or_without_a_bar_is_left_alone) {
    paintBar(6);
    EXPECT_FALSE(decorationRadius(canvas, frame, 0));
    EXPECT_FALSE(decorationRadius(canvas, {5, 5, 1, 1}, barHeight));
    EXPECT_FALSE(decorationRadius(canvas, {5, 5, 4, 40}, barHeight));
}

}  // namespace
