#include "capture/screen_capture.h"

#include <gmock/gmock.h>

#include "capture_fixture.h"

namespace {

using base::CaptureMode;
using base::Rect;
using testing::ElementsAre;
using testing::IsEmpty;

class ScreenCaptureTest : public CaptureFixture {
  protected:
    ScreenCaptureTest() {
        service.content->displays = {{1, {{0, 0}, {1920, 1080}}, 2.0, nullptr}};
        service.content->windows = {
            {4711,
             {{0, 0}, {640, 480}},
             0,
             capture::RunningApplication{"their.editor", 7},
             nullptr},
            {9,
             {{0, 0}, {1920, 1080}},
             1000,
             capture::RunningApplication{"app.lumaframe.Lumaframe", 1},
             nullptr},
            {10,
             {{0, 0}, {800, 600}},
             0,
             capture::RunningApplication{"app.lumaframe.Lumaframe", 1},
             nullptr},
        };
        service.image = picture(200, 100);
    }

    static capture::RegionCaptureRequest region() {
        return {.screenRect = {{10, 20}, {100, 50}},
                .selectionRect = {{10, 20}, {100, 50}},
                .scaleFactor = 2.0,
                .colorSpaceName = "Display P3",
                .mode = CaptureMode::screenshot,
                .view = nullptr};
    }
    static capture::WindowCaptureRequest window(capture::WindowID windowID = 4711) {
        return {.windowID = windowID,
                .scaleFactor = 2.0,
                .colorSpaceName = "Display P3",
                .mode = CaptureMode::screenshot,
                .view = nullptr};
    }
    void captureToTheEnd(const capture::RegionCaptureRequest& request) {
        screenCapture.captureRegion(request);
        service.answerContent();
        service.answerImage();
        queue.runAll();
    }
    void captureToTheEnd(const capture::WindowCaptureRequest& request) {
        screenCapture.captureWindow(request);
        service.answerContent();
        service.answerImage();
        queue.runAll();
    }
    const capture::DisplayFilter& displayFilter() {
        return std::get<capture::DisplayFilter>(service.imageRequests.at(0).filter);
    }
    const capture::StreamConfiguration& configuration() {
        return service.imageRequests.at(0).configuration;
    }
};

// A region

TEST_F(ScreenCaptureTest, a_region_asks_for_the_desktop_and_for_what_is_on_screen) {
    screenCapture.captureRegion(region());
    ASSERT_EQ(service.contentRequests.size(), 1U);
    EXPECT_EQ(service.contentRequests[0].desktopWindows, capture::DesktopWindows::included);
    EXPECT_EQ(service.contentRequests[0].visibility, capture::WindowVisibility::onScreenOnly);
    EXPECT_THAT(service.imageRequests, IsEmpty());
}

TEST_F(ScreenCaptureTest, a_region_is_taken_from_its_display_without_our_overlay) {
    screenCapture.captureRegion(region());
    service.answerContent();
    EXPECT_EQ(displayFilter().display.displayID, 1U);
    ASSERT_EQ(displayFilter().excludedWindows.size(), 1U);
    EXPECT_EQ(displayFilter().excludedWindows[0].windowID, 9U);
}

TEST_F(ScreenCaptureTest, a_region_is_configured_by_its_place_and_the_scale) {
    screenCapture.captureRegion(region());
    service.answerContent();
    EXPECT_EQ(configuration().sourceRect, (Rect{{10, 1010}, {100, 50}}));
    EXPECT_EQ(configuration().width, 200);
    EXPECT_EQ(configuration().height, 100);
    EXPECT_EQ(configuration().cursor, capture::CursorVisibility::hidden);
    EXPECT_EQ(configuration().scaling, capture::Scaling::none);
    EXPECT_EQ(configuration().pixelFormat, capture::PixelFormat::bgra);
    EXPECT_EQ(configuration().colorSpaceName, "Display P3");
}

TEST_F(ScreenCaptureTest, without_a_colour_space_a_region_leaves_it_to_the_service) {
    auto request = region();
    request.colorSpaceName.reset();
    screenCapture.captureRegion(request);
    service.answerContent();
    EXPECT_EQ(configuration().colorSpaceName, std::nullopt);
}

TEST_F(ScreenCaptureTest, the_backing_of_the_display_goes_along_with_the_filter) {
    const auto backing = std::make_shared<int>(1);
    service.content->displays[0].backing = backing;
    screenCapture.captureRegion(region());
    service.answerContent();
    EXPECT_EQ(displayFilter().display.backing, backing);
}

TEST_F(ScreenCaptureTest, a_region_on_two_displays_is_taken_from_the_first_listed) {
    service.content->displays = {{2, {{1920, 0}, {1280, 1024}}, 1.0, nullptr},
                                 {1, {{0, 0}, {1920, 1080}}, 1.0, nullptr}};
    auto request = region();
    request.screenRect = {{1900, 0}, {100, 50}};
    screenCapture.captureRegion(request);
    service.answerContent();
    EXPECT_EQ(displayFilter().display.displayID, 2U);
    EXPECT_EQ(configuration().sourceRect, (Rect{{-20, 974}, {100, 50}}));
}

TEST_F(ScreenCaptureTest, a_region_picture_has_the_point_size_of_the_selection) {
    auto request = region();
    request.selectionRect = {{0, 0}, {100.5, 50.25}};
    captureToTheEnd(request);
    ASSERT_NE(pasteboard.image, nullptr);
    EXPECT_EQ(pasteboard.image->size(), (base::Size{100.5, 50.25}));
    EXPECT_THAT(log.lines, testing::Contains("Retina screenshot copied!"));
}

TEST_F(ScreenCaptureTest, a_picture_is_delivered_in_a_later_turn) {
    screenCapture.captureRegion(region());
    service.answerContent();
    service.answerImage();
    EXPECT_EQ(pasteboard.writeCount, 0);
    EXPECT_THAT(log.lines, IsEmpty());
    queue.runAll();
    EXPECT_EQ(pasteboard.writeCount, 1);
}

TEST_F(ScreenCaptureTest, without_content_a_region_ends_with_a_line) {
    service.content.reset();
    captureToTheEnd(region());
    EXPECT_THAT(log.lines, ElementsAre("Error getting shareable content: nil"));
    EXPECT_THAT(service.imageRequests, IsEmpty());
}

TEST_F(ScreenCaptureTest, an_error_beside_the_content_ends_a_region_too) {
    service.contentError = base::Error{base::ErrorKind::unavailable, "The screen is locked."};
    captureToTheEnd(region());
    EXPECT_THAT(log.lines,
                ElementsAre("Error getting shareable content: Optional(The screen is locked.)"));
    EXPECT_THAT(service.imageRequests, IsEmpty());
}

TEST_F(ScreenCaptureTest, a_region_on_no_display_ends_with_a_line) {
    auto request = region();
    request.screenRect.origin = {-5000, 0};
    captureToTheEnd(request);
    EXPECT_THAT(log.lines, ElementsAre("No display found for selection"));
    EXPECT_THAT(service.imageRequests, IsEmpty());
}

TEST_F(ScreenCaptureTest, a_region_that_cannot_be_captured_ends_with_a_line) {
    service.image.reset();
    captureToTheEnd(region());
    EXPECT_THAT(log.lines, ElementsAre("Error capturing screenshot: nil"));
    EXPECT_EQ(pasteboard.writeCount, 0);
}

TEST_F(ScreenCaptureTest, an_error_beside_the_picture_ends_a_region_too) {
    service.imageError = base::Error{base::ErrorKind::failed, "The display is gone."};
    captureToTheEnd(region());
    EXPECT_THAT(log.lines,
                ElementsAre("Error capturing screenshot: Optional(The display is gone.)"));
    EXPECT_EQ(pasteboard.writeCount, 0);
}

// A window

TEST_F(ScreenCaptureTest, a_window_asks_for_all_windows_without_the_desktop) {
    screenCapture.captureWindow(window());
    ASSERT_EQ(service.contentRequests.size(), 1U);
    EXPECT_EQ(service.contentRequests[0].desktopWindows, capture::DesktopWindows::excluded);
    EXPECT_EQ(service.contentRequests[0].visibility, capture::WindowVisibility::all);
}

TEST_F(ScreenCaptureTest, a_window_is_captured_by_itself_in_the_size_the_service_gives) {
    screenCapture.captureWindow(window());
    service.answerContent();
    const auto& filter = std::get<capture::WindowFilter>(service.imageRequests.at(0).filter);
    EXPECT_EQ(filter.window.windowID, 4711U);
    EXPECT_EQ(configuration().sourceRect, std::nullopt);
    EXPECT_EQ(configuration().width, std::nullopt);
    EXPECT_EQ(configuration().height, std::nullopt);
    EXPECT_EQ(configuration().cursor, capture::CursorVisibility::hidden);
    EXPECT_EQ(configuration().scaling, capture::Scaling::none);
    EXPECT_EQ(configuration().pixelFormat, capture::PixelFormat::bgra);
    EXPECT_EQ(configuration().colorSpaceName, "Display P3");
}

TEST_F(ScreenCaptureTest, the_shadow_follows_the_setting_at_the_moment_of_the_capture) {
    screenCapture.captureWindow(window());
    service.answerContent();
    EXPECT_EQ(configuration().singleWindowShadow, capture::WindowShadow::included);
    screenCapture.captureWindow(window());
    settings.setBool(app::keys::captureShadows, false);
    service.answerContent();
    EXPECT_EQ(service.imageRequests.at(1).configuration.singleWindowShadow,
              capture::WindowShadow::ignored);
}

TEST_F(ScreenCaptureTest, a_window_picture_has_its_pixels_divided_by_the_scale_as_point_size) {
    service.image = picture(333, 100);
    captureToTheEnd(window());
    ASSERT_NE(pasteboard.image, nullptr);
    EXPECT_EQ(pasteboard.image->size(), (base::Size{166.5, 50}));
    EXPECT_EQ(log.lines.at(0), "Window screenshot copied! ID: 4711");
}

TEST_F(ScreenCaptureTest, of_two_windows_with_one_number_the_first_is_taken) {
    service.content->windows.push_back(service.content->windows[0]);
    service.content->windows[0].windowLayer = 5;
    screenCapture.captureWindow(window());
    service.answerContent();
    EXPECT_EQ(
        std::get<capture::WindowFilter>(service.imageRequests.at(0).filter).window.windowLayer, 5);
}

TEST_F(ScreenCaptureTest, a_window_that_was_closed_meanwhile_ends_without_a_word) {
    captureToTheEnd(window(12));
    EXPECT_THAT(log.lines, IsEmpty());
    EXPECT_THAT(service.imageRequests, IsEmpty());
    EXPECT_EQ(pasteboard.writeCount, 0);
}

TEST_F(ScreenCaptureTest, without_content_a_window_ends_without_a_word) {
    service.content.reset();
    service.contentError = base::Error{base::ErrorKind::failed, "No."};
    captureToTheEnd(window());
    EXPECT_THAT(log.lines, IsEmpty());
    EXPECT_THAT(service.imageRequests, IsEmpty());
}

TEST_F(ScreenCaptureTest, an_error_beside_the_content_does_not_matter_to_a_window) {
    service.contentError = base::Error{base::ErrorKind::failed, "No."};
    captureToTheEnd(window());
    EXPECT_EQ(log.lines.at(0), "Window screenshot copied! ID: 4711");
}

TEST_F(ScreenCaptureTest, a_window_that_cannot_be_captured_ends_with_a_line) {
    service.image.reset();
    service.imageError = base::Error{base::ErrorKind::failed, "The window is gone."};
    captureToTheEnd(window());
    EXPECT_THAT(log.lines, ElementsAre("Error capturing window: Optional(The window is gone.)"));
    service.imageError.reset();
    captureToTheEnd(window());
    EXPECT_EQ(log.lines.at(1), "Error capturing window: nil");
    EXPECT_EQ(pasteboard.writeCount, 0);
}

// The chain

TEST_F(ScreenCaptureTest, the_mode_of_the_selection_reaches_the_delivery) {
    auto request = region();
    request.mode = CaptureMode::ocr;
    captureToTheEnd(request);
    ASSERT_EQ(recognizer.images.size(), 1U);
    EXPECT_EQ(recognizer.images[0].width(), 200);
    auto ofWindow = window();
    ofWindow.mode = CaptureMode::ocr;
    captureToTheEnd(ofWindow);
    EXPECT_EQ(recognizer.images.size(), 2U);
    EXPECT_THAT(soundPlayer.played, ElementsAre("theme/Glass", "theme/Glass"));
}

TEST_F(ScreenCaptureTest, the_view_stays_alive_until_the_picture_is_delivered) {
    auto view = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = view;
    auto request = region();
    request.view = std::move(view);
    screenCapture.captureRegion(request);
    request.view.reset();
    EXPECT_FALSE(watched.expired());
    service.answerContent();
    EXPECT_FALSE(watched.expired());
    service.answerImage();
    EXPECT_FALSE(watched.expired());
    queue.runAll();
    EXPECT_TRUE(watched.expired());
}

TEST_F(ScreenCaptureTest, the_view_of_a_capture_that_failed_is_let_go) {
    auto view = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = view;
    auto request = window(12);
    request.view = std::move(view);
    screenCapture.captureWindow(request);
    request.view.reset();
    EXPECT_FALSE(watched.expired());
    service.answerContent();
    EXPECT_TRUE(watched.expired());
}

TEST_F(ScreenCaptureTest, a_capture_may_begin_while_another_is_in_flight) {
    screenCapture.captureRegion(region());
    screenCapture.captureWindow(window());
    service.answerContent();
    service.answerContent();
    service.answerImage();
    service.answerImage();
    queue.runAll();
    EXPECT_EQ(calls.count("log: Retina screenshot copied!"), 1);
    EXPECT_EQ(calls.count("log: Window screenshot copied! ID: 4711"), 1);
    EXPECT_EQ(pasteboard.writeCount, 2);
}

}  // namespace
