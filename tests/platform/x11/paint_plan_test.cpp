#include "platform/x11/paint_plan.h"

#include <gtest/gtest.h>

#include <random>

#include "platform/x11/overlay_drawings.h"

using overlay_drawings::BlockRasterizer;
using platform::x11::ArgbPixel;
using platform::x11::Figure;
using platform::x11::FigureBuilder;
using platform::x11::Ground;
using platform::x11::NativeRect;
using platform::x11::PaintPlan;
using platform::x11::pixelAt;
using platform::x11::planChange;
using platform::x11::planRepair;
using platform::x11::RoundedBox;

namespace {

/// A window in memory that does what a plan says, and complains when the plan lies.
class Canvas {
  public:
    Canvas(int width, int height) : width_(width), height_(height), pixels_(count(), 0) {}

    void apply(const PaintPlan& plan) {
        std::vector<int> touched(count(), 0);
        painted = 0;
        for (const auto& area : plan.areas) {
            forEach(area.rect, [&](std::size_t at, std::size_t) {
                set(at, area.pixel, area.ground, touched);
            });
        }
        for (const auto& tile : plan.tiles) {
            forEach(tile.rect, [&](std::size_t at, std::size_t index) {
                set(at, tile.pixels[index], tile.ground, touched);
            });
        }
    }
    [[nodiscard]] std::size_t count() const {
        return static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_);
    }
    [[nodiscard]] ArgbPixel at(int x, int y) const {
        return pixels_[static_cast<std::size_t>(y * width_ + x)];
    }
    /// Fails at the first pixel that differs from the figures painted one by one.
    void expectEquals(const std::vector<Figure>& figures) const {
        for (int y = 0; y < height_; ++y) {
            for (int x = 0; x < width_; ++x) {
                ASSERT_EQ(at(x, y), pixelAt(figures, x, y)) << x << " " << y;
            }
        }
    }
    [[nodiscard]] NativeRect frame() const { return {0, 0, width_, height_}; }

    std::size_t painted = 0;

  private:
    template <typename Each>
    void forEach(const NativeRect& rect, Each each) const {
        std::size_t index = 0;
        for (int y = rect.y; y < rect.y + rect.height; ++y) {
            for (int x = rect.x; x < rect.x + rect.width; ++x) {
                ASSERT_TRUE(frame().contains({x, y}));
                each(static_cast<std::size_t>(y * width_ + x), index++);
            }
        }
    }
    void set(std::size_t at, ArgbPixel pixel, Ground ground, std::vector<int>& touched) {
        EXPECT_EQ(touched[at]++, 0) << "painted twice";
        if (ground == Ground::bare) {
            EXPECT_EQ(pixels_[at], 0U) << "not bare";
        }
        pixels_[at] = pixel;
        ++painted;
    }

    int width_;
    int height_;
    std::vector<ArgbPixel> pixels_;
};

}  // namespace

TEST(PaintPlan, the_first_drag_dims_by_large_areas) {
    BlockRasterizer rasterizer;
    FigureBuilder builder(1, 200, rasterizer);
    const auto dimmed = builder.build({overlay::FillStep{{{0, 0}, {300, 200}}, 0, {0, 0, 0, 0.4}}});
    const PaintPlan plan = planChange({}, dimmed, {0, 0, 300, 200});
    ASSERT_EQ(plan.areas.size(), 1U);
    EXPECT_TRUE(plan.tiles.empty());
    EXPECT_EQ(plan.areas[0], (PaintPlan::Area{{0, 0, 300, 200}, 0x66000000, Ground::bare}));
}

TEST(PaintPlan, nothing_is_painted_when_nothing_changed) {
    BlockRasterizer rasterizer;
    FigureBuilder builder(1.25, 200, rasterizer);
    const auto steps = overlay_drawings::selection({240, 160}, {{20, 20}, {100.8, 60}}, rasterizer);
    const auto before = builder.build(steps);
    EXPECT_TRUE(planChange(before, builder.build(steps), {0, 0, 300, 200}).isEmpty());
}

TEST(PaintPlan, a_text_that_stays_is_rasterized_once) {
    BlockRasterizer rasterizer;
    FigureBuilder builder(1, 200, rasterizer);
    const auto steps = overlay_drawings::selection({300, 200}, {{20, 20}, {100, 60}}, rasterizer);
    (void)builder.build(steps);
    (void)builder.build(steps);
    EXPECT_EQ(rasterizer.rasterized, 1);
}

TEST(PaintPlan, a_motion_of_one_pixel_repaints_a_small_part_of_the_display) {
    BlockRasterizer rasterizer;
    FigureBuilder builder(1, 2160, rasterizer);
    const base::Size view{3840, 2160};
    const auto before =
        builder.build(overlay_drawings::selection(view, {{100, 100}, {3000, 1800}}, rasterizer));
    const auto after =
        builder.build(overlay_drawings::selection(view, {{100, 100}, {3001, 1801}}, rasterizer));
    const PaintPlan plan = planChange(before, after, {0, 0, 3840, 2160});
    std::size_t pixels = 0;
    std::size_t uploaded = 0;
    for (const auto& area : plan.areas) {
        pixels += static_cast<std::size_t>(area.rect.width * area.rect.height);
    }
    for (const auto& tile : plan.tiles) {
        uploaded += tile.pixels.size();
    }
    EXPECT_LT(pixels, 60000U);
    EXPECT_LT(uploaded, 5000U);
    EXPECT_LT(plan.areas.size() + plan.tiles.size(), 150U);
}

class PaintPlanAtScale : public testing::TestWithParam<double> {};

TEST_P(PaintPlanAtScale, the_fill_of_a_whole_view_reaches_exactly_the_pixels_of_the_display) {
    BlockRasterizer rasterizer;
    const double scale = GetParam();
    for (int side = 600; side < 4100; ++side) {
        FigureBuilder builder(scale, side, rasterizer);
        const double points = side / scale;
        const auto figures = builder.build(
            {overlay::FillStep{{{0, 0}, {points, points}}, 0, {0, 0, 0, 0.4}},
             overlay::FillStep{{{100 / scale, 200 / scale}, {300 / scale, 7 / scale}}, 0, {}}});
        const double pixels = side;
        ASSERT_EQ(figures[0].outer, (RoundedBox{0, 0, pixels, pixels, 0}));
        ASSERT_EQ(figures[1].outer, (RoundedBox{100, pixels - 207, 400, pixels - 200, 0}));
    }
}

TEST_P(PaintPlanAtScale, repainting_only_what_changed_gives_the_same_picture_as_painting_all) {
    std::mt19937 random(17);
    BlockRasterizer rasterizer;
    const double scale = GetParam();
    const int width = 320;
    const int height = 200;
    const base::Size view{width / scale, height / scale};
    Canvas canvas(width, height);
    FigureBuilder builder(scale, height, rasterizer);
    std::vector<Figure> before;
    for (int motion = 0; motion < 24; ++motion) {
        const base::Rect rect = overlay_drawings::randomRect(view, scale, random);
        const auto steps = motion % 9 == 8   ? std::vector<overlay::DrawingStep>{}
                           : motion % 7 == 6 ? overlay_drawings::highlight(view, rect)
                                             : overlay_drawings::selection(view, rect, rasterizer);
        const auto after = builder.build(steps);
        canvas.apply(planChange(before, after, canvas.frame()));
        canvas.expectEquals(after);
        ASSERT_FALSE(HasFatalFailure() || HasNonfatalFailure()) << "motion " << motion;
        before = after;
    }
}

TEST_P(PaintPlanAtScale, a_repair_paints_every_place_that_is_not_transparent) {
    std::mt19937 random(18);
    BlockRasterizer rasterizer;
    const double scale = GetParam();
    const base::Size view{320 / scale, 200 / scale};
    for (int round = 0; round < 20; ++round) {
        FigureBuilder builder(scale, 200, rasterizer);
        const auto figures = builder.build(overlay_drawings::selection(
            view, overlay_drawings::randomRect(view, scale, random), rasterizer));
        Canvas canvas(320, 200);
        for (const NativeRect& part :
             {NativeRect{0, 0, 113, 200}, {113, 0, 207, 77}, {113, 77, 207, 123}}) {
            canvas.apply(planRepair(figures, part));
        }
        canvas.expectEquals(figures);
        ASSERT_FALSE(HasFatalFailure() || HasNonfatalFailure()) << "round " << round;
    }
}

INSTANTIATE_TEST_SUITE_P(Scales, PaintPlanAtScale, testing::Values(1.0, 1.25, 1.5, 1.75, 2.0),
                         [](const auto& scale) {
                             return "times_" + std::to_string(static_cast<int>(scale.param * 100));
                         });
