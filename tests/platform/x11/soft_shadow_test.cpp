#include "platform/x11/soft_shadow.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace {

using platform::x11::Canvas;
using platform::x11::NativeRect;
using platform::x11::SoftShadow;

/// The shadow of an opaque white window of 200 x 100 pixels, at one pixel a point.
class SoftShadowTest : public testing::Test {
  protected:
    SoftShadowTest()
        : frame(shadow.frameAround({0, 0, 200, 100})),
          window{-frame.x, -frame.y, 200, 100},
          bytes(static_cast<std::size_t>(frame.width) * static_cast<std::size_t>(frame.height) * 4),
          canvas{frame.width, frame.height, bytes.data(), nullptr} {
        for (int y = 0; y < window.height; ++y) {
            std::uint8_t* row = canvas.row(window.y + y) + window.x * 4;
            std::fill(row, row + window.width * 4, std::uint8_t{255});
        }
        shadow.draw(canvas, window);
    }

    [[nodiscard]] int alphaAt(int x, int y) const { return canvas.row(y)[x * 4 + 3]; }

    SoftShadow shadow{1.0};
    NativeRect frame;
    NativeRect window;
    std::vector<std::uint8_t> bytes;
    Canvas canvas;
};

TEST_F(SoftShadowTest, reaches_further_down_than_up) {
    EXPECT_EQ(frame, (NativeRect{-24, -16, 248, 148}));
}

TEST(SoftShadow, grows_with_the_scale_of_the_display) {
    EXPECT_EQ(SoftShadow(2.0).frameAround({10, 20, 200, 100}),
              (NativeRect{10 - 48, 20 - 32, 296, 196}));
}

TEST_F(SoftShadowTest, leaves_the_window_as_it_is) {
    for (int y = 0; y < window.height; ++y) {
        const std::uint8_t* row = canvas.row(window.y + y) + window.x * 4;
        ASSERT_TRUE(std::all_of(row, row + window.width * 4,
                                [](std::uint8_t byte) { return byte == 255; }));
    }
}

TEST_F(SoftShadowTest, fades_to_nothing_at_the_edge_of_the_picture) {
    for (int x = 0; x < canvas.width; ++x) {
        EXPECT_LE(alphaAt(x, 0), 1);
        EXPECT_LE(alphaAt(x, canvas.height - 1), 1);
    }
    const int middle = window.x + window.width / 2;
    int last = 255;
    for (int y = window.y + window.height; y < canvas.height; ++y) {
        EXPECT_LE(alphaAt(middle, y), last);
        last = alphaAt(middle, y);
    }
    // 8 below the window is the edge of the blurred rectangle: half of 45 %.
    EXPECT_NEAR(alphaAt(middle, window.y + window.height + 8), 57, 4);
}

TEST_F(SoftShadowTest, is_black_and_alike_on_both_sides) {
    const int y = window.y + window.height / 2;
    for (int x = 0; x < window.x; ++x) {
        EXPECT_EQ(alphaAt(x, y), alphaAt(canvas.width - 1 - x, y));
        EXPECT_EQ(canvas.row(y)[x * 4], 0);
        EXPECT_EQ(canvas.row(y)[x * 4 + 2], 0);
    }
}

TEST(SoftShadow, shows_through_a_translucent_window) {
    SoftShadow shadow(1.0);
    std::vector<std::uint8_t> bytes(std::size_t{100} * 100 * 4, 150);
    const Canvas canvas{100, 100, bytes.data(), nullptr};
    shadow.draw(canvas, {0, 0, 100, 100});
    const std::uint8_t* middle = canvas.row(50) + 50 * 4;
    EXPECT_EQ(middle[0], 150);
    // 150 and 45 % of what it lets through.
    EXPECT_NEAR(middle[3], 150 + 0.45 * 105, 1);
}

}  // namespace
