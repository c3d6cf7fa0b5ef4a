#include "overlay/selection_view.h"

#include <gmock/gmock.h>

#include <variant>

#include "overlay_fixture.h"

namespace {

using base::CaptureMode;
using base::Point;
using base::Rect;
using overlay::Cursor;
using testing::ElementsAre;
using testing::IsEmpty;

class SelectionViewTest : public OverlayFixture {};

// The mouse in region mode

TEST_F(SelectionViewTest, a_press_says_where_it_was) {
    open();
    surface().press({10, 20.5});
    EXPECT_THAT(log.lines, ElementsAre("🖱️ SelectionView mouseDown at (10.0, 20.5)"));
    surface().press({-3, 1066.25});
    EXPECT_EQ(log.lines.at(1), "🖱️ SelectionView mouseDown at (-3.0, 1066.25)");
}

TEST_F(SelectionViewTest, a_press_draws_nothing_yet) {
    open();
    surface().press({10, 20});
    EXPECT_EQ(state().startPoint, (Point{10, 20}));
    EXPECT_THAT(surface().presentations, IsEmpty());
}

TEST_F(SelectionViewTest, a_drag_makes_the_rectangle) {
    open();
    surface().press({100, 100});
    surface().drag({70, 130});
    EXPECT_EQ(state().selectionRect, (Rect{{70, 100}, {30, 30}}));
    EXPECT_FALSE(state().isCenterBasedResize);
}

TEST_F(SelectionViewTest, the_option_key_makes_the_press_the_centre) {
    open();
    surface().press({100, 100});
    surface().drag({130, 90}, 0x80000);
    EXPECT_EQ(state().selectionRect, (Rect{{70, 90}, {60, 20}}));
    surface().drag({130, 90}, 0x80000 | 0x20000);
    EXPECT_TRUE(state().isCenterBasedResize);
    surface().drag({130, 90}, 0x160000);
    EXPECT_EQ(state().selectionRect, (Rect{{100, 90}, {30, 10}}));
}

TEST_F(SelectionViewTest, a_drag_on_one_display_leaves_the_other_as_it_is) {
    useTwoDisplays();
    open();
    surface(0).press({10, 10});
    surface(0).drag({50, 50});
    EXPECT_EQ(surface(0).presentations.size(), 1U);
    EXPECT_THAT(surface(1).presentations, IsEmpty());
    EXPECT_EQ(state(1).selectionRect, std::nullopt);
}

TEST_F(SelectionViewTest, a_drag_event_without_a_change_draws_nothing_again) {
    open();
    surface().press({10, 10});
    surface().drag({50, 50});
    surface().drag({50, 50});
    EXPECT_EQ(surface().presentations.size(), 1U);
}

TEST_F(SelectionViewTest, in_region_mode_moves_do_not_ask_for_the_pointer) {
    open();
    surface().move({10, 10});
    EXPECT_EQ(pointer.locationCount, 0);
    EXPECT_THAT(surface().presentations, IsEmpty());
}

// The cursor

TEST_F(SelectionViewTest, the_cursor_over_the_overlay_follows_the_mode) {
    open();
    surface().enter();
    EXPECT_EQ(pointer.cursor(), Cursor::crosshair);
    surface().key(49);
    surface().enter();
    EXPECT_EQ(pointer.cursor(), Cursor::pointingHand);
    surface().key(49);
    EXPECT_EQ(pointer.cursor(), Cursor::crosshair);
}

TEST_F(SelectionViewTest, for_text_recognition_the_cursor_is_always_the_crosshair) {
    open(CaptureMode::ocr);
    surface().enter();
    surface().key(49);
    surface().enter();
    EXPECT_THAT(pointer.cursors,
                ElementsAre(Cursor::crosshair, Cursor::crosshair, Cursor::crosshair));
}

TEST_F(SelectionViewTest, leaving_the_overlay_sets_no_cursor) {
    open();
    surface().exit();
    surface().move({1, 1});
    surface().press({1, 1});
    surface().drag({9, 9});
    EXPECT_THAT(pointer.cursors, IsEmpty());
}

// Window mode

TEST_F(SelectionViewTest, a_toggle_sets_the_cursor_and_then_asks_for_the_windows) {
    open();
    surface().key(49);
    EXPECT_THAT(calls.calls(), ElementsAre("cursor: pointing hand", "shareable content"));
    ASSERT_EQ(service.contentRequests.size(), 1U);
    EXPECT_EQ(service.contentRequests[0].desktopWindows, capture::DesktopWindows::excluded);
    EXPECT_EQ(service.contentRequests[0].visibility, capture::WindowVisibility::onScreenOnly);
}

TEST_F(SelectionViewTest, a_toggle_back_asks_for_nothing) {
    open();
    surface().key(49);
    service.answerContent();
    queue.runAll();
    calls.clear();
    surface().key(49);
    EXPECT_THAT(calls.calls(), ElementsAre("cursor: crosshair"));
    EXPECT_THAT(surface().lastSteps(), IsEmpty());
}

TEST_F(SelectionViewTest, the_list_is_used_in_a_later_turn) {
    open();
    pointer.place = Point{150, 150};
    surface().key(49);
    service.answerContent();
    EXPECT_THAT(state().availableWindows, IsEmpty());
    queue.runAll();
    EXPECT_EQ(state().availableWindows.size(), 2U);
    EXPECT_EQ(state().selectedWindowID, 4711U);
}

TEST_F(SelectionViewTest, a_window_under_the_pointer_is_highlighted_when_the_list_arrives) {
    open();
    pointer.place = Point{150, 150};
    surface().key(49);
    EXPECT_EQ(surface().lastSteps().size(), 1U);
    service.answerContent();
    queue.runAll();
    ASSERT_EQ(surface().presentations.size(), 2U);
    ASSERT_EQ(surface().lastSteps().size(), 2U);
    EXPECT_EQ(std::get<overlay::FillStep>(surface().lastSteps()[1]).rect,
              (Rect{{100, 680}, {400, 300}}));
}

TEST_F(SelectionViewTest, only_windows_of_the_application_in_front_are_offered) {
    service.content->windows.push_back(
        {5, {{0, 0}, {900, 900}}, 0, capture::RunningApplication{"browser", 43}, nullptr});
    service.content->windows.push_back({6, {{0, 0}, {900, 900}}, 0, std::nullopt, nullptr});
    service.content->windows.push_back(
        {7, {{0, 0}, {900, 900}}, 25, capture::RunningApplication{"editor", 42}, nullptr});
    openInWindowMode({50, 50});
    EXPECT_EQ(state().availableWindows.size(), 2U);
    EXPECT_EQ(state().selectedWindowID, std::nullopt);
}

TEST_F(SelectionViewTest, without_an_application_in_front_no_window_is_offered) {
    workspace.frontmost.reset();
    openInWindowMode({150, 150});
    EXPECT_THAT(state().availableWindows, IsEmpty());
    surface().release({0, 0});
    queue.runAll();
    EXPECT_THAT(service.contentRequests, IsEmpty());
    EXPECT_EQ(calls.count(closedLine), 2);
}

TEST_F(SelectionViewTest, a_list_that_cannot_be_had_changes_nothing_and_is_not_said) {
    openInWindowMode({150, 150});
    service.content.reset();
    service.contentError = base::Error{base::ErrorKind::failed, "No."};
    surface().key(49);
    surface().key(49);
    service.answerContent();
    queue.runAll();
    EXPECT_EQ(state().availableWindows.size(), 2U);
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(SelectionViewTest, a_list_that_arrives_after_window_mode_was_left_is_only_stored) {
    open();
    pointer.place = Point{150, 150};
    surface().key(49);
    surface().key(49);
    const std::size_t drawn = surface().presentations.size();
    service.answerContent();
    queue.runAll();
    EXPECT_EQ(state().availableWindows.size(), 2U);
    EXPECT_EQ(state().selectedWindowID, std::nullopt);
    EXPECT_EQ(surface().presentations.size(), drawn);
}

TEST_F(SelectionViewTest, a_list_that_arrives_after_the_close_does_nothing) {
    open();
    surface().key(49);
    manager.close();
    calls.clear();
    service.answerContent();
    queue.runAll();
    EXPECT_THAT(calls.calls(), IsEmpty());
}

TEST_F(SelectionViewTest, a_list_that_was_queued_before_the_close_does_nothing) {
    open();
    surface().key(49);
    service.answerContent();
    manager.close();
    queue.runAll();
    EXPECT_THAT(manager.windows(), IsEmpty());
}

TEST_F(SelectionViewTest, a_move_looks_under_the_pointer_of_the_system_not_of_the_event) {
    openInWindowMode({50, 50});
    pointer.place = Point{700, 200};
    surface().move({150, 880});
    EXPECT_EQ(state().selectedWindowID, 4712U);
    EXPECT_EQ(state().selectedWindowRect, (Rect{{600, 100}, {400, 300}}));
}

TEST_F(SelectionViewTest, without_a_pointer_location_a_move_does_nothing) {
    openInWindowMode({150, 150});
    pointer.place.reset();
    surface().move({1, 1});
    EXPECT_EQ(state().selectedWindowID, 4711U);
}

TEST_F(SelectionViewTest, only_another_window_under_the_pointer_draws_again) {
    openInWindowMode({150, 150});
    const std::size_t drawn = surface().presentations.size();
    pointer.place = Point{160, 160};
    surface().move({0, 0});
    pointer.place = Point{1500, 900};
    surface().move({0, 0});
    EXPECT_EQ(surface().presentations.size(), drawn);
    EXPECT_EQ(state().selectedWindowID, 4711U);
    pointer.place = Point{700, 200};
    surface().move({0, 0});
    EXPECT_EQ(surface().presentations.size(), drawn + 1);
}

TEST_F(SelectionViewTest, in_window_mode_a_press_is_said_and_has_no_other_effect) {
    openInWindowMode({50, 50});
    const std::size_t drawn = surface().presentations.size();
    surface().press({10, 20});
    surface().drag({50, 50});
    EXPECT_THAT(log.lines, ElementsAre("🖱️ SelectionView mouseDown at (10.0, 20.0)"));
    EXPECT_EQ(state().startPoint, std::nullopt);
    EXPECT_EQ(state().selectionRect, std::nullopt);
    EXPECT_EQ(surface().presentations.size(), drawn);
}

}  // namespace
