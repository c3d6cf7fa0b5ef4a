#include "overlay/selection_drawing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <variant>

namespace {

using base::Rect;
using overlay::ClearStep;
using overlay::DrawingStep;
using overlay::FillStep;
using overlay::SegmentStep;
using overlay::SelectionDrawing;
using overlay::SelectionState;
using overlay::StrokeStep;
using overlay::TextStep;
using testing::ElementsAre;
using testing::IsEmpty;

const Rect display{{1920, 56}, {1280, 1024}};
const Rect bounds{{0, 0}, {1280, 1024}};
constexpr double primaryHeight = 1080;

SelectionDrawing draw(const SelectionState& state) {
    return overlay::drawSelection(state, display, primaryHeight,
                                  [](const std::string& text, const overlay::Font&) {
                                      return base::Size{6.0 * static_cast<double>(text.size()), 12};
                                  });
}

SelectionState region(const Rect& rect) {
    SelectionState state;
    state.selectionRect = rect;
    return state;
}

SelectionState hovering(const Rect& frame) {
    SelectionState state;
    state.isWindowMode = true;
    state.selectedWindowID = 7;
    state.selectedWindowRect = frame;
    return state;
}

const FillStep dimmed{bounds, 0, {0, 0, 0, 0.4}};

TEST(SelectionDrawing, before_the_first_drag_nothing_at_all_is_drawn) {
    SelectionState state;
    EXPECT_THAT(draw(state).steps, IsEmpty());
    state.press({10, 10});
    EXPECT_THAT(draw(state).steps, IsEmpty());
}

TEST(SelectionDrawing, a_region_is_cut_out_framed_guided_and_labelled_in_this_order) {
    const overlay::Color guide{1, 1, 1, 0.3};
    const overlay::Color white{1, 1, 1, 1};
    const Rect rect{{100, 100}, {200, 100}};
    EXPECT_THAT(
        draw(region(rect)).steps,
        ElementsAre(DrawingStep(dimmed), DrawingStep(ClearStep{rect, 5}),
                    DrawingStep(StrokeStep{rect, 5, 2, {0.5, 0.0, 1.0, 1.0}}),
                    DrawingStep(SegmentStep{{100, 150}, {300, 150}, 0.3, guide}),
                    DrawingStep(SegmentStep{{200, 100}, {200, 200}, 0.3, guide}),
                    DrawingStep(SegmentStep{{196, 150}, {204, 150}, 1, white}),
                    DrawingStep(SegmentStep{{200, 146}, {200, 154}, 1, white}),
                    DrawingStep(FillStep{{{305, 144}, {64, 16}}, 4, {0, 0, 0, 0.6}}),
                    DrawingStep(TextStep{
                        "200 x 100", {310, 146}, {10, overlay::FontWeight::medium}, white})));
}

TEST(SelectionDrawing, the_label_is_measured_in_the_font_it_is_drawn_in) {
    std::string text;
    overlay::Font font;
    (void)overlay::drawSelection(region({{0, 0}, {40, 0}}), display, primaryHeight,
                                 [&](const std::string& measured, const overlay::Font& in) {
                                     text = measured;
                                     font = in;
                                     return base::Size{};
                                 });
    EXPECT_EQ(text, "40 x 0");
    EXPECT_EQ(font, (overlay::Font{10, overlay::FontWeight::medium}));
}

TEST(SelectionDrawing, nothing_is_clamped_to_the_display) {
    const Rect rect{{1000, -50}, {280, 100}};
    const auto steps = draw(region(rect)).steps;
    EXPECT_EQ(std::get<ClearStep>(steps.at(1)).rect, rect);
    EXPECT_EQ(std::get<FillStep>(steps.at(7)).rect, (Rect{{1285, -6}, {64, 16}}));
}

TEST(SelectionDrawing, window_mode_with_nothing_hovered_only_dims) {
    SelectionState state;
    state.toggleWindowMode();
    EXPECT_THAT(draw(state).steps, ElementsAre(DrawingStep(dimmed)));
}

TEST(SelectionDrawing, the_hovered_window_is_highlighted_at_its_place_on_this_display) {
    EXPECT_THAT(
        draw(hovering({{2000, 100}, {400, 300}})).steps,
        ElementsAre(DrawingStep(dimmed),
                    DrawingStep(FillStep{{{80, 624}, {400, 300}}, 0, {0.2, 0.6, 1.0, 0.5}})));
}

TEST(SelectionDrawing, the_highlight_of_a_window_on_another_display_lies_outside_of_this_one) {
    const auto steps = draw(hovering({{100, 100}, {400, 300}})).steps;
    EXPECT_TRUE(intersection(std::get<FillStep>(steps.at(1)).rect, bounds).isEmpty());
}

TEST(SelectionDrawing, in_window_mode_a_left_over_rectangle_is_not_drawn) {
    SelectionState state = hovering({{2000, 100}, {400, 300}});
    state.selectionRect = Rect{{1, 1}, {50, 50}};
    EXPECT_EQ(draw(state).steps.size(), 2U);
}

TEST(SelectionDrawing, in_region_mode_a_left_over_window_is_not_drawn) {
    SelectionState state = hovering({{2000, 100}, {400, 300}});
    state.isWindowMode = false;
    EXPECT_THAT(draw(state).steps, IsEmpty());
}

// What has to be painted again

TEST(ChangedRect, between_nothing_and_something_is_everything) {
    const SelectionDrawing some = draw(region({{100, 100}, {20, 20}}));
    EXPECT_EQ(overlay::changedRect({}, some, bounds), bounds);
    EXPECT_EQ(overlay::changedRect(some, {}, bounds), bounds);
}

TEST(ChangedRect, of_a_small_selection_is_small) {
    const Rect changed = overlay::changedRect(draw(region({{100, 100}, {20, 20}})),
                                              draw(region({{100, 100}, {24, 24}})), bounds);
    EXPECT_LT(changed.size.width, 120);
    EXPECT_LT(changed.size.height, 40);
}

TEST(ChangedRect, lies_inside_of_the_display) {
    const Rect changed = overlay::changedRect(draw(region({{-500, -500}, {3000, 3000}})),
                                              draw(region({{-500, -500}, {3001, 3001}})), bounds);
    EXPECT_EQ(changed, bounds);
}

TEST(ChangedRect, holds_the_old_and_the_new_window) {
    const Rect changed = overlay::changedRect(draw(hovering({{2000, 100}, {100, 100}})),
                                              draw(hovering({{2300, 300}, {100, 100}})), bounds);
    EXPECT_EQ(intersection(changed, {{80, 824}, {100, 100}}), (Rect{{80, 824}, {100, 100}}));
    EXPECT_EQ(intersection(changed, {{380, 624}, {100, 100}}), (Rect{{380, 624}, {100, 100}}));
}

Rect painted(const DrawingStep& step) {
    struct Extent {
        Rect operator()(const FillStep& fill) const { return fill.rect; }
        Rect operator()(const ClearStep& clear) const { return clear.rect; }
        Rect operator()(const StrokeStep& stroke) const {
            return grown(stroke.rect, stroke.lineWidth / 2);
        }
        Rect operator()(const SegmentStep& segment) const {
            const Rect line{segment.from,
                            {segment.to.x - segment.from.x, segment.to.y - segment.from.y}};
            return grown(line, segment.lineWidth / 2);
        }
        Rect operator()(const TextStep& text) const {
            return {text.origin, {6.0 * static_cast<double>(text.text.size()), 12}};
        }
    };
    return std::visit(Extent{}, step);
}

TEST(ChangedRect, holds_every_figure_of_both_drawings) {
    std::mt19937 generator(11);
    std::uniform_int_distribution<int> eighths(-800, 12000);
    std::uniform_int_distribution<int> lengths(0, 4000);
    const auto randomRegion = [&] {
        return region({{eighths(generator) / 8.0, eighths(generator) / 8.0},
                       {lengths(generator) / 8.0, lengths(generator) / 8.0}});
    };
    for (int round = 0; round < 1000; ++round) {
        const SelectionDrawing before = draw(randomRegion());
        const SelectionDrawing after = draw(randomRegion());
        const Rect changed = overlay::changedRect(before, after, bounds);
        for (const SelectionDrawing* drawing : {&before, &after}) {
            for (std::size_t step = 1; step < drawing->steps.size(); ++step) {
                const Rect visible = intersection(painted(drawing->steps[step]), bounds);
                EXPECT_EQ(intersection(visible, changed), visible);
            }
        }
    }
}

}  // namespace
