// Windows that are no rectangles.
#include <gtest/gtest.h>
#include <xcb/shape.h>

#include <array>

#include "capture_rig.h"
#include "platform/x11/window_shape.h"

namespace {

using capture::WindowShadow;
using platform::x11::Canvas;
using platform::x11::NativeRect;
using platform::x11::WindowShape;
using tests::CaptureRig;
using tests::pictureOf;

constexpr std::uint32_t blue = 0xff2244ee;

TEST(WindowShape, without_parts_covers_everything) {
    EXPECT_TRUE(WindowShape().covers({0, 0, 100, 100}));
    EXPECT_FALSE(WindowShape(std::vector<NativeRect>{}).covers({0, 0, 100, 100}));
    const WindowShape halves({{0, 0, 50, 100}, {50, 0, 50, 100}});
    EXPECT_TRUE(halves.covers({10, 10, 90, 90}));
    EXPECT_FALSE(halves.covers({10, 10, 91, 90}));
}

TEST(WindowShape, clears_what_lies_outside_of_it) {
    std::vector<std::uint8_t> bytes(std::size_t{6} * 5 * 4, 255);
    const Canvas canvas{6, 5, bytes.data(), nullptr};
    // Two parts in one band, one in another, some of it outside of the canvas.
    const WindowShape shape({{8, 21, 3, 2}, {13, 21, 100, 2}, {11, 24, 2, 70}});
    shape.clip(canvas, {10, 20, 6, 5});
    std::string shown;
    for (int y = 0; y < 5; ++y) {
        for (int x = 0; x < 6; ++x) {
            shown += canvas.row(y)[x * 4 + 3] == 255 ? '#' : '.';
        }
        shown += '\n';
    }
    EXPECT_EQ(shown,
              "......\n"
              "#..###\n"
              "#..###\n"
              "......\n"
              ".##...\n");
}

class ShapedWindow : public testing::TestWithParam<desktop::Compositor> {
  protected:
    ShapedWindow()
        : rig({.windowManager = desktop::WindowManager::none, .compositor = GetParam()}) {
        auto* const client = rig.desktop().client().get();
        tests::makeWindow(client, {.frame = {0, 0, 800, 600}, .background = 0xffffff});
        window = tests::makeWindow(client, {.frame = {100, 100, 90, 60}, .background = 0x2244ee});
        // A cross.
        const std::array<xcb_rectangle_t, 2> parts{{{30, 0, 30, 60}, {0, 20, 90, 20}}};
        xcb_shape_rectangles(client, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
                             XCB_CLIP_ORDERING_UNSORTED, window, 0, 0, 2, parts.data());
        rig.awaitPixel(145, 105, blue);
        rig.awaitPixel(105, 105, 0xffffffff);
    }
    CaptureRig rig;
    xcb_window_t window;
};

INSTANTIATE_TEST_SUITE_P(WithAndWithoutCompositor, ShapedWindow,
                         testing::Values(desktop::Compositor::none, desktop::Compositor::picom),
                         [](const auto& parameter) {
                             return parameter.param == desktop::Compositor::none ? "without"
                                                                                 : "with";
                         });

TEST_P(ShapedWindow, is_transparent_outside_of_its_shape) {
    const auto image = rig.captureWindow(window, WindowShadow::ignored);
    ASSERT_TRUE(image);
    const auto picture = pictureOf(image.value());
    ASSERT_EQ(picture.width, 90);
    ASSERT_EQ(picture.height, 60);
    for (int y = 0; y < 60; ++y) {
        for (int x = 0; x < 90; ++x) {
            const bool isInside = (x >= 30 && x < 60) || (y >= 20 && y < 40);
            ASSERT_EQ(picture.at(x, y), isInside ? blue : 0U) << x << ", " << y;
        }
    }
}

TEST_P(ShapedWindow, casts_a_shadow_of_its_shape) {
    const auto image = rig.captureWindow(window, WindowShadow::included);
    ASSERT_TRUE(image);
    const auto picture = pictureOf(image.value());
    ASSERT_EQ(picture.width, 90 + 48);
    ASSERT_EQ(picture.height, 60 + 48);
    const auto alphaAt = [&](int x, int y) { return picture.at(24 + x, 16 + y) >> 24U; };
    EXPECT_EQ(picture.at(24 + 45, 16 + 30), blue);
    // In the upper left notch: strong beside the cross, weak in the corner.
    EXPECT_GT(alphaAt(27, 17), 20U);
    EXPECT_LT(alphaAt(0, 0), 10U);
    EXPECT_EQ(picture.at(24 + 27, 16 + 17) & 0xffffffU, 0U) << "nothing of what lies below";
}

}  // namespace
