#include "overlay/selection_geometry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace {

using base::Point;
using base::Rect;
using overlay::OptionKey;
using overlay::Redraw;
using overlay::Segment;
using overlay::SelectionState;
using overlay::WindowCandidate;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int32_t target = 42;

WindowCandidate window(std::uint32_t windowID, const Rect& frame,
                       std::optional<std::int32_t> ownerPID = target, int layer = 0) {
    return {windowID, frame, layer, ownerPID};
}

std::vector<std::uint32_t> offered(const SelectionState& state) {
    std::vector<std::uint32_t> ids;
    for (const WindowCandidate& candidate : state.availableWindows) {
        ids.push_back(candidate.windowID);
    }
    return ids;
}

Rect dragged(Point from, Point to, OptionKey optionKey = OptionKey::released) {
    SelectionState state;
    state.press(from);
    state.drag(to, optionKey);
    return state.selectionRect.value_or(Rect{{-1, -1}, {-1, -1}});
}

/// In window mode, with two windows of the target next to each other.
SelectionState pickingState() {
    SelectionState state;
    state.toggleWindowMode();
    state.applyWindowList(
        {window(1, {{100, 100}, {200, 100}}), window(2, {{300, 100}, {200, 100}})}, target,
        std::nullopt);
    return state;
}

// Selecting a region

TEST(SelectionState, begins_in_region_mode_with_nothing) {
    const SelectionState state;
    EXPECT_EQ(state.startPoint, std::nullopt);
    EXPECT_EQ(state.currentPoint, std::nullopt);
    EXPECT_EQ(state.selectionRect, std::nullopt);
    EXPECT_FALSE(state.isCenterBasedResize);
    EXPECT_EQ(state.mode, base::CaptureMode::screenshot);
    EXPECT_FALSE(state.isWindowMode);
    EXPECT_EQ(state.selectedWindowID, std::nullopt);
    EXPECT_EQ(state.selectedWindowRect, std::nullopt);
    EXPECT_THAT(state.availableWindows, IsEmpty());
}

TEST(SelectionState, a_press_sets_both_points_and_makes_no_rectangle) {
    SelectionState state;
    state.press({10, 20});
    EXPECT_EQ(state.startPoint, (Point{10, 20}));
    EXPECT_EQ(state.currentPoint, (Point{10, 20}));
    EXPECT_EQ(state.selectionRect, std::nullopt);
    EXPECT_EQ(state.finishSelection(), std::nullopt);
    EXPECT_EQ(state.capturableRegion(), std::nullopt);
}

TEST(SelectionState, a_press_leaves_the_rectangle_of_an_earlier_drag_as_it_was) {
    SelectionState state;
    state.press({0, 0});
    state.drag({30, 40}, OptionKey::released);
    state.press({500, 500});
    EXPECT_EQ(state.selectionRect, (Rect{{0, 0}, {30, 40}}));
}

TEST(SelectionState, a_drag_spans_the_press_point_and_the_pointer) {
    EXPECT_EQ(dragged({100, 100}, {70, 130}), (Rect{{70, 100}, {30, 30}}));
    EXPECT_EQ(dragged({100, 100}, {130, 130}), (Rect{{100, 100}, {30, 30}}));
    EXPECT_EQ(dragged({100, 100}, {70, 60}), (Rect{{70, 60}, {30, 40}}));
}

TEST(SelectionState, a_drag_back_to_the_press_point_leaves_an_empty_rectangle_there) {
    EXPECT_EQ(dragged({100, 100}, {100, 100}), (Rect{{100, 100}, {0, 0}}));
}

TEST(SelectionState, with_the_option_key_the_press_point_is_the_centre) {
    EXPECT_EQ(dragged({100, 100}, {130, 90}, OptionKey::held), (Rect{{70, 90}, {60, 20}}));
}

TEST(SelectionState, the_option_key_counts_as_it_was_at_the_last_drag_event) {
    SelectionState state;
    state.press({100, 100});
    state.drag({110, 120}, OptionKey::released);
    EXPECT_FALSE(state.isCenterBasedResize);
    state.drag({110, 120}, OptionKey::held);
    EXPECT_TRUE(state.isCenterBasedResize);
    EXPECT_EQ(state.selectionRect, (Rect{{90, 80}, {20, 40}}));
    state.drag({110, 120}, OptionKey::released);
    EXPECT_EQ(state.selectionRect, (Rect{{100, 100}, {10, 20}}));
}

TEST(SelectionState, a_drag_without_a_press_makes_no_rectangle) {
    SelectionState state;
    state.drag({10, 10}, OptionKey::released);
    EXPECT_EQ(state.currentPoint, (Point{10, 10}));
    EXPECT_EQ(state.selectionRect, std::nullopt);
}

TEST(SelectionState, without_a_start_point_an_update_takes_the_rectangle_away) {
    SelectionState state;
    state.selectionRect = Rect{{1, 2}, {3, 4}};
    state.currentPoint = Point{5, 5};
    state.updateSelectionRect();
    EXPECT_EQ(state.selectionRect, std::nullopt);
}

TEST(SelectionState, a_rectangle_may_reach_beyond_its_display) {
    EXPECT_EQ(dragged({10, 10}, {-500, 5000}), (Rect{{-500, 10}, {510, 4990}}));
}

TEST(SelectionState, only_what_is_wider_and_higher_than_two_points_is_captured) {
    SelectionState state;
    const auto regionOf = [&](double width, double height) {
        state.selectionRect = Rect{{10, 10}, {width, height}};
        return state.capturableRegion();
    };
    EXPECT_EQ(regionOf(2, 100), std::nullopt);
    EXPECT_EQ(regionOf(100, 2), std::nullopt);
    EXPECT_EQ(regionOf(40, 0), std::nullopt);
    EXPECT_EQ(regionOf(2.5, 3), (Rect{{10, 10}, {2.5, 3}}));
    EXPECT_EQ(regionOf(2.01, 2.01), (Rect{{10, 10}, {2.01, 2.01}}));
}

TEST(SelectionState, in_region_mode_a_finish_attempts_the_region) {
    SelectionState state;
    state.press({0, 0});
    state.drag({30, 40}, OptionKey::released);
    state.selectedWindowID = 7;
    state.selectedWindowRect = Rect{{0, 0}, {100, 100}};
    EXPECT_EQ(state.finishSelection(), std::nullopt);
}

// Switching the mode

TEST(SelectionState, a_toggle_ends_the_region_selection) {
    SelectionState state;
    state.press({0, 0});
    state.drag({30, 40}, OptionKey::released);
    state.toggleWindowMode();
    EXPECT_TRUE(state.isWindowMode);
    EXPECT_EQ(state.startPoint, std::nullopt);
    EXPECT_EQ(state.currentPoint, std::nullopt);
    EXPECT_EQ(state.selectionRect, std::nullopt);
    state.toggleWindowMode();
    EXPECT_FALSE(state.isWindowMode);
    EXPECT_EQ(state.selectionRect, std::nullopt);
}

TEST(SelectionState, leaving_window_mode_forgets_the_hovered_window_and_keeps_the_list) {
    SelectionState state = pickingState();
    state.updateHoveredWindow({150, 150});
    ASSERT_EQ(state.selectedWindowID, 1U);
    state.toggleWindowMode();
    EXPECT_EQ(state.selectedWindowID, std::nullopt);
    EXPECT_EQ(state.selectedWindowRect, std::nullopt);
    EXPECT_THAT(offered(state), ElementsAre(1, 2));
    state.toggleWindowMode();
    EXPECT_EQ(state.selectedWindowID, std::nullopt);
    EXPECT_THAT(offered(state), ElementsAre(1, 2));
}

TEST(SelectionState, a_toggle_leaves_the_mode_and_the_option_key_alone) {
    SelectionState state;
    state.mode = base::CaptureMode::ocr;
    state.press({0, 0});
    state.drag({30, 40}, OptionKey::held);
    state.toggleWindowMode();
    EXPECT_EQ(state.mode, base::CaptureMode::ocr);
    EXPECT_TRUE(state.isCenterBasedResize);
}

TEST(SelectionState, in_window_mode_presses_and_drags_have_no_effect) {
    SelectionState state = pickingState();
    state.press({10, 10});
    state.drag({50, 50}, OptionKey::held);
    EXPECT_EQ(state.startPoint, std::nullopt);
    EXPECT_EQ(state.currentPoint, std::nullopt);
    EXPECT_EQ(state.selectionRect, std::nullopt);
    EXPECT_FALSE(state.isCenterBasedResize);
}

TEST(SelectionState, a_toggle_in_the_middle_of_a_drag_and_back_needs_a_new_press) {
    SelectionState state;
    state.press({0, 0});
    state.drag({30, 40}, OptionKey::released);
    state.toggleWindowMode();
    state.toggleWindowMode();
    state.drag({50, 50}, OptionKey::released);
    EXPECT_EQ(state.selectionRect, std::nullopt);
}

// Picking a window

TEST(SelectionState, without_a_target_nothing_is_offered_and_nothing_else_happens) {
    SelectionState state = pickingState();
    EXPECT_EQ(state.applyWindowList({window(1, {{0, 0}, {100, 100}})}, std::nullopt, Point{50, 50}),
              Redraw::notNeeded);
    EXPECT_THAT(state.availableWindows, IsEmpty());
    EXPECT_EQ(state.selectedWindowID, std::nullopt);
    EXPECT_EQ(state.finishSelection(), std::nullopt);
}

TEST(SelectionState, only_ordinary_windows_of_the_target_are_offered) {
    SelectionState state;
    const Rect frame{{0, 0}, {100, 100}};
    state.applyWindowList(
        {window(1, frame, 43), window(2, frame, std::nullopt), window(3, frame, target, 1),
         window(4, frame, target, 1000), window(5, frame, target, -1), window(6, frame)},
        target, std::nullopt);
    EXPECT_THAT(offered(state), ElementsAre(6));
}

TEST(SelectionState, a_window_must_be_wider_and_higher_than_fifty_points) {
    SelectionState state;
    state.applyWindowList({window(1, {{0, 0}, {50, 100}}), window(2, {{0, 0}, {100, 50}}),
                           window(3, {{0, 0}, {50.5, 50.5}}), window(4, {{0, 0}, {50.5, 50}})},
                          target, std::nullopt);
    EXPECT_THAT(offered(state), ElementsAre(3));
}

TEST(SelectionState, the_order_of_the_list_is_kept) {
    SelectionState state;
    const Rect frame{{0, 0}, {100, 100}};
    state.applyWindowList({window(9, frame), window(1, frame), window(5, frame)}, target,
                          std::nullopt);
    EXPECT_THAT(offered(state), ElementsAre(9, 1, 5));
}

TEST(SelectionState, a_new_list_replaces_the_old_one_and_finds_the_window_under_the_pointer) {
    SelectionState state = pickingState();
    EXPECT_EQ(state.applyWindowList({window(7, {{0, 0}, {100, 100}})}, target, Point{50, 50}),
              Redraw::needed);
    EXPECT_THAT(offered(state), ElementsAre(7));
    EXPECT_EQ(state.selectedWindowID, 7U);
}

TEST(SelectionState, a_list_that_arrives_after_window_mode_was_left_is_stored_without_a_hit) {
    SelectionState state;
    EXPECT_EQ(state.applyWindowList({window(7, {{0, 0}, {100, 100}})}, target, Point{50, 50}),
              Redraw::notNeeded);
    EXPECT_THAT(offered(state), ElementsAre(7));
    EXPECT_EQ(state.selectedWindowID, std::nullopt);
}

TEST(SelectionState, without_a_pointer_a_list_is_stored_without_a_hit) {
    SelectionState state;
    state.toggleWindowMode();
    EXPECT_EQ(state.applyWindowList({window(7, {{0, 0}, {100, 100}})}, target, std::nullopt),
              Redraw::notNeeded);
    EXPECT_EQ(state.selectedWindowID, std::nullopt);
}

TEST(SelectionState, the_window_under_the_pointer_is_selected_with_its_frame) {
    SelectionState state = pickingState();
    EXPECT_EQ(state.updateHoveredWindow({150, 150}), Redraw::needed);
    EXPECT_EQ(state.selectedWindowID, 1U);
    EXPECT_EQ(state.selectedWindowRect, (Rect{{100, 100}, {200, 100}}));
    EXPECT_EQ(state.finishSelection(), 1U);
}

TEST(SelectionState, the_same_window_again_needs_no_redraw) {
    SelectionState state = pickingState();
    state.updateHoveredWindow({150, 150});
    EXPECT_EQ(state.updateHoveredWindow({160, 160}), Redraw::notNeeded);
    EXPECT_EQ(state.selectedWindowID, 1U);
}

TEST(SelectionState, the_far_edge_of_a_window_is_not_inside) {
    SelectionState state = pickingState();
    EXPECT_EQ(state.updateHoveredWindow({500, 150}), Redraw::notNeeded);
    EXPECT_EQ(state.updateHoveredWindow({150, 200}), Redraw::notNeeded);
    EXPECT_EQ(state.selectedWindowID, std::nullopt);
    state.updateHoveredWindow({300, 100});
    EXPECT_EQ(state.selectedWindowID, 2U);
}

TEST(SelectionState, over_no_window_the_last_one_stays_selected) {
    SelectionState state = pickingState();
    state.updateHoveredWindow({150, 150});
    EXPECT_EQ(state.updateHoveredWindow({1000, 1000}), Redraw::notNeeded);
    EXPECT_EQ(state.selectedWindowID, 1U);
    EXPECT_EQ(state.finishSelection(), 1U);
}

TEST(SelectionState, of_windows_that_overlap_the_first_listed_wins) {
    SelectionState state;
    state.toggleWindowMode();
    state.applyWindowList({window(8, {{0, 0}, {100, 100}}), window(3, {{0, 0}, {500, 500}})},
                          target, Point{50, 50});
    EXPECT_EQ(state.selectedWindowID, 8U);
}

TEST(SelectionState, a_hover_in_region_mode_has_no_effect) {
    SelectionState state = pickingState();
    state.toggleWindowMode();
    EXPECT_EQ(state.updateHoveredWindow({150, 150}), Redraw::notNeeded);
    EXPECT_EQ(state.selectedWindowID, std::nullopt);
}

TEST(SelectionState, a_window_is_captured_only_when_its_number_and_its_frame_are_known) {
    SelectionState state;
    state.isWindowMode = true;
    state.selectedWindowID = 7;
    EXPECT_EQ(state.finishSelection(), std::nullopt);
    state.selectedWindowRect = Rect{};
    EXPECT_EQ(state.finishSelection(), 7U);
    state.selectedWindowID.reset();
    EXPECT_EQ(state.finishSelection(), std::nullopt);
}

// The three spaces

TEST(SelectionSpaces, view_and_screen_space_differ_by_the_origin_of_the_display) {
    EXPECT_EQ(overlay::viewToScreen({{10, 20}, {30, 40}}, {1920, -100}),
              (Rect{{1930, -80}, {30, 40}}));
    EXPECT_EQ(overlay::screenToView({{1930, -80}, {30, 40}}, {1920, -100}),
              (Rect{{10, 20}, {30, 40}}));
}

TEST(SelectionSpaces, the_vertical_axis_is_flipped_at_the_height_of_the_primary_display) {
    EXPECT_EQ(overlay::topLeftToScreen({{10, 20}, {30, 40}}, 1080), (Rect{{10, 1020}, {30, 40}}));
    EXPECT_EQ(overlay::topLeftToScreen({{10, 1080}, {30, 40}}, 1080), (Rect{{10, -40}, {30, 40}}));
}

// The figures

TEST(SelectionFigures, the_guide_lines_cross_the_region_in_its_middle) {
    EXPECT_THAT(overlay::guideLines({{10, 20}, {100, 50}}),
                ElementsAre(Segment{{10, 45}, {110, 45}}, Segment{{60, 20}, {60, 70}}));
}

TEST(SelectionFigures, the_centre_mark_reaches_four_points_to_each_side) {
    EXPECT_THAT(overlay::centreMark({{10, 20}, {100, 50}}),
                ElementsAre(Segment{{56, 45}, {64, 45}}, Segment{{60, 41}, {60, 49}}));
}

TEST(SelectionFigures, the_label_shows_whole_points_cut_off) {
    EXPECT_EQ(overlay::sizeLabelText({{0, 0}, {120.7, 80.2}}), "120 x 80");
    EXPECT_EQ(overlay::sizeLabelText({{0, 0}, {40, 0}}), "40 x 0");
    EXPECT_EQ(overlay::sizeLabelText({{5, 5}, {0.999, 3839.999}}), "0 x 3839");
}

TEST(SelectionFigures, the_label_lies_right_of_the_region_and_higher_than_its_middle) {
    const Rect frame = overlay::sizeLabelFrame({{10, 20}, {100, 50}}, {60, 12});
    EXPECT_EQ(frame, (Rect{{115, 39}, {70, 16}}));
    EXPECT_EQ(frame.maxY() - 45, 45 - frame.minY() + 4);
    EXPECT_EQ(overlay::sizeLabelTextOrigin(frame), (Point{120, 41}));
}

TEST(SelectionFigures, the_corners_are_rounded_by_five_and_by_four) {
    EXPECT_EQ(overlay::selectionCornerRadius, 5);
    EXPECT_EQ(overlay::sizeLabelCornerRadius, 4);
}

}  // namespace
