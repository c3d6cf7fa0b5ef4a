#include "platform/x11/frame_corners.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

namespace {

using platform::x11::Canvas;
using platform::x11::clearUnpaintedCorners;
using platform::x11::hasUnpaintedCorners;
using platform::x11::NativeRect;

/// A gray frame of 60 x 40 pixels with a margin of 5 around it.
class FrameCorners : public testing::Test {
  protected:
    FrameCorners() : bytes(std::size_t{70} * 50 * 4, 200), canvas{70, 50, bytes.data(), nullptr} {
        for (std::size_t index = 3; index < bytes.size(); index += 4) {
            bytes[index] = 255;
        }
    }
    std::uint8_t* at(int x, int y) { return canvas.row(frame.y + y) + (frame.x + x) * 4; }
    void paint(int x, int y, std::uint8_t level) { std::fill(at(x, y), at(x, y) + 3, level); }
    /// What mutter leaves of the upper left corner.
    void leaveCorner() {
        const std::array<int, 6> lengths{6, 4, 3, 2, 1, 1};
        for (int y = 0; y < 6; ++y) {
            for (int x = 0; x < lengths[static_cast<std::size_t>(y)]; ++x) {
                paint(x, y, 0);
            }
        }
        paint(6, 0, 100);
    }

    NativeRect frame{5, 5, 60, 40};
    std::vector<std::uint8_t> bytes;
    Canvas canvas;
};

TEST_F(FrameCorners, that_are_painted_are_left_alone) {
    const auto before = bytes;
    EXPECT_FALSE(hasUnpaintedCorners(canvas, frame));
    clearUnpaintedCorners(canvas, frame);
    EXPECT_EQ(bytes, before);
}

TEST_F(FrameCorners, that_are_round_and_black_become_transparent) {
    leaveCorner();
    EXPECT_TRUE(hasUnpaintedCorners(canvas, frame));
    clearUnpaintedCorners(canvas, frame);
    EXPECT_EQ(at(0, 0)[3], 0);
    EXPECT_EQ(at(5, 0)[3], 0);
    EXPECT_EQ(at(0, 5)[3], 0);
    EXPECT_EQ(at(10, 10)[3], 255);
    EXPECT_EQ(at(59, 39)[3], 255);
}

TEST_F(FrameCorners, have_edges_that_are_as_translucent_as_they_are_dark) {
    leaveCorner();
    clearUnpaintedCorners(canvas, frame);
    EXPECT_NEAR(at(6, 0)[3], 127, 1);
    EXPECT_EQ(at(6, 0)[0], 100);
    EXPECT_EQ(at(7, 0)[3], 255);
}

TEST_F(FrameCorners, of_a_black_title_bar_belong_to_the_window) {
    for (int y = 0; y < 12; ++y) {
        for (int x = 0; x < 60; ++x) {
            paint(x, y, 0);
        }
    }
    EXPECT_FALSE(hasUnpaintedCorners(canvas, frame));
}

TEST_F(FrameCorners, with_a_black_square_or_dot_in_them_belong_to_the_window) {
    paint(0, 0, 0);
    EXPECT_FALSE(hasUnpaintedCorners(canvas, frame));
    for (int y = 0; y < 8; ++y) {
        for (int x = 0; x < 8; ++x) {
            paint(x, y, 0);
        }
    }
    EXPECT_FALSE(hasUnpaintedCorners(canvas, frame));
}

TEST_F(FrameCorners, of_a_frame_of_a_few_pixels_are_no_trouble) {
    frame = {5, 5, 1, 1};
    paint(0, 0, 0);
    EXPECT_FALSE(hasUnpaintedCorners(canvas, frame));
    clearUnpaintedCorners(canvas, frame);
}

}  // namespace
