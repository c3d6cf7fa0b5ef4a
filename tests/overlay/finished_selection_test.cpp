#include <gmock/gmock.h>

#include "overlay_fixture.h"

namespace {

using base::CaptureMode;
using base::Rect;
using testing::IsEmpty;

class FinishedSelectionTest : public OverlayFixture {
  protected:
    const capture::StreamConfiguration& configuration() {
        return service.imageRequests.at(0).configuration;
    }
    /// A whole selection of (10, 20, 100, 50) on the display at `index`.
    void select(std::size_t index = 0) {
        surface(index).press({10, 20});
        surface(index).drag({110, 70});
        surface(index).release({110, 70});
    }
};

TEST_F(FinishedSelectionTest, a_region_is_captured_and_the_overlay_closed_twice_later) {
    open();
    select();
    EXPECT_EQ(service.contentRequests.size(), 1U);
    EXPECT_EQ(calls.count(closedLine), 0);
    EXPECT_EQ(manager.windows().size(), 1U);
    EXPECT_EQ(queue.pendingCount(), 2U);
    queue.runAll();
    EXPECT_EQ(calls.count(closedLine), 2);
    EXPECT_THAT(manager.windows(), IsEmpty());
}

TEST_F(FinishedSelectionTest, a_window_is_captured_and_the_overlay_closed_once_later) {
    openInWindowMode({150, 150});
    surface().press({150, 900});
    surface().release({150, 900});
    ASSERT_EQ(service.contentRequests.size(), 1U);
    EXPECT_EQ(service.contentRequests[0].visibility, capture::WindowVisibility::all);
    EXPECT_EQ(calls.count(closedLine), 0);
    EXPECT_EQ(queue.pendingCount(), 1U);
    queue.runAll();
    EXPECT_EQ(calls.count(closedLine), 1);
}

TEST_F(FinishedSelectionTest, a_press_without_a_drag_captures_nothing_and_closes) {
    open();
    surface().press({10, 10});
    surface().release({10, 10});
    queue.runAll();
    EXPECT_THAT(service.contentRequests, IsEmpty());
    EXPECT_EQ(calls.count(closedLine), 2);
}

TEST_F(FinishedSelectionTest, a_drag_of_two_points_captures_nothing_and_closes) {
    open();
    surface().press({10, 10});
    surface().drag({12, 60});
    surface().release({12, 60});
    queue.runAll();
    EXPECT_THAT(service.contentRequests, IsEmpty());
    EXPECT_EQ(calls.count(closedLine), 2);
}

TEST_F(FinishedSelectionTest, in_window_mode_with_nothing_hovered_nothing_is_captured) {
    openInWindowMode({50, 50});
    surface().release({50, 50});
    queue.runAll();
    EXPECT_THAT(service.contentRequests, IsEmpty());
    EXPECT_EQ(calls.count(closedLine), 2);
}

TEST_F(FinishedSelectionTest, a_region_on_a_second_display_is_handed_on_in_screen_space) {
    useTwoDisplays();
    service.content->displays = {{1, {{0, 0}, {1920, 1080}}, 1.0, nullptr},
                                 {2, {{1920, 56}, {1280, 1024}}, 2.0, nullptr}};
    open();
    select(1);
    queue.runAll();
    service.answerContent();
    EXPECT_EQ(
        std::get<capture::DisplayFilter>(service.imageRequests.at(0).filter).display.displayID, 2U);
    EXPECT_EQ(configuration().sourceRect, (Rect{{10, 954}, {100, 50}}));
    EXPECT_EQ(configuration().width, 200);
    EXPECT_EQ(configuration().height, 100);
    EXPECT_EQ(configuration().colorSpaceName, "Display P3");
    service.answerImage();
    queue.runAll();
    ASSERT_NE(pasteboard.image, nullptr);
    EXPECT_EQ(pasteboard.image->size(), (base::Size{100, 50}));
}

TEST_F(FinishedSelectionTest, without_a_screen_the_scale_is_two_and_the_colour_space_unknown) {
    useTwoDisplays();
    open();
    surface(0).screen.reset();
    select(0);
    queue.runAll();
    service.answerContent();
    EXPECT_EQ(configuration().width, 200);
    EXPECT_EQ(configuration().colorSpaceName, std::nullopt);
}

TEST_F(FinishedSelectionTest, a_colour_space_without_a_name_is_left_to_the_service) {
    displays.list = {
        base::Screen{1, {{0, 0}, {1920, 1080}}, 1.0, std::make_shared<const base::ColorSpace>()}};
    open();
    select();
    queue.runAll();
    service.answerContent();
    EXPECT_EQ(configuration().colorSpaceName, std::nullopt);
    EXPECT_EQ(configuration().width, 100);
}

TEST_F(FinishedSelectionTest,
       a_window_picture_is_sized_by_the_screen_of_the_overlay_it_was_picked_in) {
    useTwoDisplays();
    service.image = picture(300, 100);
    openInWindowMode({150, 150});
    surface(1).release({0, 0});
    queue.runAll();
    service.answerContent();
    service.answerImage();
    queue.runAll();
    ASSERT_NE(pasteboard.image, nullptr);
    EXPECT_EQ(pasteboard.image->size(), (base::Size{150, 50}));
    EXPECT_EQ(log.lines.back().substr(0, 21), "Screenshot saved to: ");
    EXPECT_EQ(calls.count("log: Window screenshot copied! ID: 4711"), 1);
}

TEST_F(FinishedSelectionTest, the_mode_of_the_overlay_decides_what_the_picture_is_for) {
    open(CaptureMode::ocr);
    select();
    queue.runAll();
    manager.showSelection(CaptureMode::screenshot);
    service.answerContent();
    service.answerImage();
    queue.runAll();
    EXPECT_EQ(recognizer.images.size(), 1U);
}

TEST_F(FinishedSelectionTest, the_view_outlives_its_window_until_the_picture_is_delivered) {
    open();
    const auto view = manager.windows().at(0)->contentView()->weak_from_this();
    select();
    queue.runAll();
    EXPECT_FALSE(view.expired());
    service.answerContent();
    service.answerImage();
    EXPECT_FALSE(view.expired());
    queue.runAll();
    EXPECT_TRUE(view.expired());
}

TEST_F(FinishedSelectionTest, a_view_in_no_window_captures_no_region) {
    open();
    surface().press({10, 20});
    surface().drag({110, 70});
    const auto view = manager.windows().at(0)->contentView()->shared_from_this();
    manager.close();
    calls.clear();
    view->captureRegion();
    EXPECT_THAT(service.contentRequests, IsEmpty());
    queue.runAll();
    EXPECT_EQ(calls.count(closedLine), 1);
}

TEST_F(FinishedSelectionTest, a_view_in_no_window_captures_a_window_at_scale_two) {
    open();
    service.image = picture(300, 100);
    const auto view = manager.windows().at(0)->contentView()->shared_from_this();
    manager.close();
    calls.clear();
    view->captureWindow(4711);
    service.answerContent();
    service.answerImage();
    queue.runAll();
    EXPECT_EQ(pasteboard.image->size(), (base::Size{150, 50}));
    EXPECT_EQ(calls.count(closedLine), 0);
}

TEST_F(FinishedSelectionTest, a_selection_finished_while_another_is_in_flight_loses_neither) {
    open();
    select();
    queue.runAll();
    open();
    select();
    queue.runAll();
    while (service.answerContent()) {
    }
    while (service.answerImage()) {
    }
    queue.runAll();
    EXPECT_EQ(calls.count("log: Retina screenshot copied!"), 2);
    EXPECT_THAT(manager.windows(), IsEmpty());
}

}  // namespace
