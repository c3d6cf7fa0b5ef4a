#include "platform/qt/qt_text_rasterizer.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <algorithm>
#include <cmath>
#include <numeric>

using overlay::Font;
using overlay::FontWeight;
using platform::TextBitmap;
using platform::qt::QtTextRasterizer;

namespace {

const Font label{10, FontWeight::medium};

class QtTextRasterizerTest : public testing::TestWithParam<double> {
  protected:
    QtTextRasterizerTest() {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        application_ = std::make_unique<QGuiApplication>(argumentCount_, arguments_);
    }

    QtTextRasterizer rasterizer;

  private:
    int argumentCount_ = 1;
    char name_[5] = "test";
    char* arguments_[2] = {name_, nullptr};
    std::unique_ptr<QGuiApplication> application_;
};

struct Ink {
    int left;
    int top;
    int right;
    int bottom;
};

/// The rectangle of the pixels that are covered by more than a breath, from the bitmap's corner.
Ink inkOf(const TextBitmap& bitmap) {
    Ink ink{bitmap.width, bitmap.height, 0, 0};
    for (int y = 0; y < bitmap.height; ++y) {
        for (int x = 0; x < bitmap.width; ++x) {
            if (bitmap.coverage[static_cast<std::size_t>(y * bitmap.width + x)] > 16) {
                ink = {std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x + 1),
                       std::max(ink.bottom, y + 1)};
            }
        }
    }
    return ink;
}

long long weightOf(const TextBitmap& bitmap) {
    return std::accumulate(bitmap.coverage.begin(), bitmap.coverage.end(), 0LL);
}

}  // namespace

TEST_P(QtTextRasterizerTest, the_letters_lie_in_the_box_that_measure_gives) {
    const double scale = GetParam();
    const base::Size box = rasterizer.measure("1920 x 1080", label);
    const TextBitmap bitmap = rasterizer.rasterize("1920 x 1080", label, scale);
    ASSERT_EQ(bitmap.coverage.size(), static_cast<std::size_t>(bitmap.width * bitmap.height));
    const Ink ink = inkOf(bitmap);
    ASSERT_LT(ink.left, ink.right);
    EXPECT_GE(bitmap.offsetX + ink.left, -1);
    EXPECT_LE(bitmap.offsetX + ink.right, std::ceil(box.width * scale) + 1);
    EXPECT_GE(bitmap.offsetY + ink.top, -std::ceil(box.height * scale) - 1);
    EXPECT_LE(bitmap.offsetY + ink.bottom, 0);
    EXPECT_GT(ink.right - ink.left, box.width * scale * 0.8);
}

TEST_P(QtTextRasterizerTest, the_edges_are_softened_and_the_strokes_are_full) {
    const TextBitmap bitmap = rasterizer.rasterize("H", Font{20, FontWeight::medium}, GetParam());
    EXPECT_GT(*std::max_element(bitmap.coverage.begin(), bitmap.coverage.end()), 240);
    EXPECT_TRUE(std::any_of(bitmap.coverage.begin(), bitmap.coverage.end(),
                            [](std::uint8_t value) { return value > 16 && value < 240; }));
}

TEST_P(QtTextRasterizerTest, an_empty_text_has_no_width_and_no_letters) {
    EXPECT_EQ(rasterizer.measure("", label).width, 0);
    EXPECT_EQ(weightOf(rasterizer.rasterize("", label, GetParam())), 0);
}

TEST_P(QtTextRasterizerTest, a_longer_text_is_wider_and_not_higher) {
    const base::Size shorter = rasterizer.measure("40 x 0", label);
    const base::Size longer = rasterizer.measure("4000 x 0", label);
    EXPECT_LT(shorter.width, longer.width);
    EXPECT_EQ(shorter.height, longer.height);
    EXPECT_GE(shorter.height, 10);
}

TEST_P(QtTextRasterizerTest, the_ink_grows_with_the_square_of_the_scale) {
    const double scale = GetParam();
    const auto once = static_cast<double>(weightOf(rasterizer.rasterize("88", label, 1)));
    const auto scaled = static_cast<double>(weightOf(rasterizer.rasterize("88", label, scale)));
    EXPECT_NEAR(scaled / once, scale * scale, 0.15 * scale * scale);
}

INSTANTIATE_TEST_SUITE_P(Scales, QtTextRasterizerTest, testing::Values(1.0, 1.25, 1.5, 2.0),
                         [](const auto& scale) {
                             return "times_" + std::to_string(static_cast<int>(scale.param * 100));
                         });
