#include "overlay/selection_overlay_manager.h"

#include <gmock/gmock.h>

#include "overlay_fixture.h"

namespace {

using base::CaptureMode;
using overlay::TapVerdict;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t space = 49;
constexpr std::uint32_t escape = 53;

class SelectionOverlayManagerTest : public OverlayFixture {};

// Opening

TEST_F(SelectionOverlayManagerTest, begins_closed_with_nothing_recorded) {
    EXPECT_THAT(manager.windows(), IsEmpty());
    EXPECT_FALSE(manager.hasEventTap());
    EXPECT_EQ(manager.currentMode(), CaptureMode::screenshot);
    EXPECT_EQ(manager.targetAppPID(), std::nullopt);
    EXPECT_THAT(calls.calls(), IsEmpty());
}

TEST_F(SelectionOverlayManagerTest, every_step_of_an_opening_comes_in_its_order) {
    useTwoDisplays();
    manager.showSelection(CaptureMode::screenshot);
    EXPECT_THAT(calls.calls(),
                ElementsAre("log: 🟢 Target App: Editor (PID: 42)", "cursor: arrow", closedLine,
                            "surface create: 1", "surface show: 1", "surface create: 2",
                            "surface show: 2", "cursor: crosshair",
                            "log: 🎯 Cursor set to crosshair in showSelection()", "tap create"));
}

TEST_F(SelectionOverlayManagerTest, there_is_one_window_for_each_display_in_their_order) {
    useTwoDisplays();
    open();
    ASSERT_EQ(manager.windows().size(), 2U);
    ASSERT_EQ(surfaces.openSurfaces().size(), 2U);
    EXPECT_EQ(surface(0).screen->displayID, 1U);
    EXPECT_EQ(surface(1).screen->displayID, 2U);
    EXPECT_EQ(surfaces.keySurface, surfaces.openSurfaces().at(1));
}

TEST_F(SelectionOverlayManagerTest, the_displays_are_read_afresh_at_every_opening) {
    open();
    useTwoDisplays();
    open();
    EXPECT_EQ(manager.windows().size(), 2U);
    EXPECT_EQ(displays.readCount, 2);
}

TEST_F(SelectionOverlayManagerTest, the_views_copy_the_mode) {
    useTwoDisplays();
    open(CaptureMode::ocr);
    EXPECT_EQ(manager.currentMode(), CaptureMode::ocr);
    EXPECT_EQ(state(0).mode, CaptureMode::ocr);
    EXPECT_EQ(state(1).mode, CaptureMode::ocr);
}

TEST_F(SelectionOverlayManagerTest, nothing_is_drawn_at_an_opening) {
    open();
    EXPECT_THAT(surface().presentations, IsEmpty());
}

TEST_F(SelectionOverlayManagerTest, without_a_display_the_cursor_and_the_tap_are_set_all_the_same) {
    displays.list.clear();
    manager.showSelection(CaptureMode::screenshot);
    EXPECT_THAT(manager.windows(), IsEmpty());
    EXPECT_EQ(pointer.cursor(), overlay::Cursor::crosshair);
    EXPECT_EQ(keyboard.press(escape), TapVerdict::swallow);
    queue.runAll();
    EXPECT_FALSE(manager.hasEventTap());
}

// The application in front

TEST_F(SelectionOverlayManagerTest, an_application_without_a_name_is_unknown) {
    workspace.frontmost = overlay::Application{4242, std::nullopt};
    manager.showSelection(CaptureMode::screenshot);
    EXPECT_EQ(log.lines.at(0), "🟢 Target App: Unknown (PID: 4242)");
    EXPECT_EQ(manager.targetAppPID(), 4242);
}

TEST_F(SelectionOverlayManagerTest, with_nothing_in_front_the_last_application_is_kept) {
    open();
    workspace.frontmost.reset();
    manager.showSelection(CaptureMode::screenshot);
    EXPECT_EQ(manager.targetAppPID(), 42);
    EXPECT_EQ(log.lines.at(0), "🎯 Cursor restored to arrow in close()");
}

TEST_F(SelectionOverlayManagerTest, with_nothing_in_front_yet_there_is_no_application) {
    workspace.frontmost.reset();
    open();
    EXPECT_EQ(manager.targetAppPID(), std::nullopt);
}

TEST_F(SelectionOverlayManagerTest, closing_keeps_the_application_and_the_mode) {
    open(CaptureMode::ocr);
    manager.close();
    EXPECT_EQ(manager.targetAppPID(), 42);
    EXPECT_EQ(manager.currentMode(), CaptureMode::ocr);
}

// Opening while open

TEST_F(SelectionOverlayManagerTest, opening_while_open_ends_with_one_set_of_windows) {
    useTwoDisplays();
    open();
    workspace.frontmost = overlay::Application{43, "Browser"};
    manager.showSelection(CaptureMode::ocr);
    EXPECT_THAT(
        calls.calls(),
        ElementsAre("log: 🟢 Target App: Browser (PID: 43)", "tap remove", "surface close: 1",
                    "surface close: 2", "cursor: arrow", closedLine, "surface create: 1",
                    "surface show: 1", "surface create: 2", "surface show: 2", "cursor: crosshair",
                    "log: 🎯 Cursor set to crosshair in showSelection()", "tap create"));
    EXPECT_EQ(surfaces.surfaces.size(), 4U);
    EXPECT_EQ(surfaces.openSurfaces().size(), 2U);
    EXPECT_TRUE(surfaces.surfaces.at(0)->isDestroyed);
    EXPECT_EQ(keyboard.installedCount(), 1U);
    EXPECT_EQ(manager.targetAppPID(), 43);
    EXPECT_EQ(state().mode, CaptureMode::ocr);
}

TEST_F(SelectionOverlayManagerTest, opening_while_open_loses_the_selection) {
    open();
    surface().press({10, 10});
    surface().drag({100, 100});
    manager.showSelection(CaptureMode::screenshot);
    EXPECT_EQ(state().selectionRect, std::nullopt);
    EXPECT_EQ(service.contentRequests.size(), 0U);
}

// Closing

TEST_F(SelectionOverlayManagerTest, every_step_of_a_close_comes_in_its_order) {
    useTwoDisplays();
    open();
    manager.close();
    EXPECT_THAT(calls.calls(), ElementsAre("tap remove", "surface close: 1", "surface close: 2",
                                           "cursor: arrow", closedLine));
    EXPECT_THAT(manager.windows(), IsEmpty());
    EXPECT_FALSE(manager.hasEventTap());
    EXPECT_TRUE(surfaces.surfaces.at(0)->isDestroyed);
}

TEST_F(SelectionOverlayManagerTest, closing_twice_only_sets_the_cursor_again) {
    open();
    manager.close();
    calls.clear();
    manager.close();
    EXPECT_THAT(calls.calls(), ElementsAre("cursor: arrow", closedLine));
    EXPECT_EQ(surfaces.surfaces.at(0)->closeCount, 1);
}

TEST_F(SelectionOverlayManagerTest, a_display_that_comes_or_goes_closes_the_overlay) {
    open();
    displays.change({screen(1, {{0, 0}, {1920, 1080}}), screen(2, {{1920, 0}, {800, 600}})});
    EXPECT_THAT(manager.windows(), IsEmpty());
    EXPECT_EQ(calls.count(closedLine), 1);
}

TEST_F(SelectionOverlayManagerTest, a_closed_overlay_does_not_listen_to_displays) {
    open();
    manager.close();
    EXPECT_FALSE(displays.hasChangeHandler());
}

// Keys

TEST_F(SelectionOverlayManagerTest, escape_closes_in_a_later_turn_and_is_swallowed) {
    open();
    EXPECT_EQ(keyboard.press(escape), TapVerdict::swallow);
    EXPECT_THAT(calls.calls(), IsEmpty());
    queue.runAll();
    EXPECT_EQ(calls.count(closedLine), 1);
    EXPECT_THAT(manager.windows(), IsEmpty());
}

TEST_F(SelectionOverlayManagerTest, space_toggles_every_display_in_a_later_turn_and_is_swallowed) {
    useTwoDisplays();
    open();
    EXPECT_EQ(keyboard.press(space), TapVerdict::swallow);
    EXPECT_FALSE(state(0).isWindowMode);
    queue.runAll();
    EXPECT_EQ(log.lines.at(0), "🔵 toggleWindowMode() called");
    EXPECT_TRUE(state(0).isWindowMode);
    EXPECT_TRUE(state(1).isWindowMode);
    EXPECT_EQ(surface(0).lastSteps().size(), 1U);
    EXPECT_EQ(surface(1).lastSteps().size(), 1U);
}

TEST_F(SelectionOverlayManagerTest, every_other_key_is_swallowed_without_effect) {
    open();
    for (const std::uint32_t key : {0U, 36U, 48U, overlay::unknownKeyCode}) {
        EXPECT_EQ(keyboard.press(key), TapVerdict::swallow);
    }
    queue.runAll();
    EXPECT_THAT(calls.calls(), IsEmpty());
    EXPECT_EQ(manager.windows().size(), 1U);
}

TEST_F(SelectionOverlayManagerTest, a_notice_that_the_tap_was_disabled_passes_unanswered) {
    open();
    EXPECT_EQ(keyboard.send({overlay::TapEventType::tapDisabled, escape}), TapVerdict::pass);
    queue.runAll();
    EXPECT_THAT(calls.calls(), IsEmpty());
    EXPECT_EQ(keyboard.createCount, 1);
}

TEST_F(SelectionOverlayManagerTest, after_a_close_no_key_is_seen_any_more) {
    open();
    manager.close();
    EXPECT_EQ(keyboard.press(escape), std::nullopt);
}

TEST_F(SelectionOverlayManagerTest, without_a_tap_the_overlay_stays_up) {
    keyboard.createError = base::Error{base::ErrorKind::notPermitted, "Somebody else has it."};
    manager.showSelection(CaptureMode::screenshot);
    EXPECT_EQ(log.lines.back(),
              "Failed to create event tap. Ensure Accessibility permissions are granted.");
    EXPECT_FALSE(manager.hasEventTap());
    EXPECT_EQ(manager.windows().size(), 1U);
    calls.clear();
    manager.close();
    EXPECT_THAT(calls.startingWith({"tap"}), IsEmpty());
}

TEST_F(SelectionOverlayManagerTest, without_a_tap_space_toggles_only_the_window_with_the_keys) {
    keyboard.createError = base::Error{base::ErrorKind::notPermitted, "Somebody else has it."};
    useTwoDisplays();
    open();
    EXPECT_EQ(surfaces.keySurface->key(space), overlay::KeyVerdict::handled);
    EXPECT_FALSE(state(0).isWindowMode);
    EXPECT_TRUE(state(1).isWindowMode);
    EXPECT_THAT(calls.startingWith({"log: 🔵"}), IsEmpty());
}

// Toggling

TEST_F(SelectionOverlayManagerTest, toggling_a_closed_overlay_only_says_so) {
    manager.toggleWindowMode();
    EXPECT_THAT(calls.calls(), ElementsAre("log: 🔵 toggleWindowMode() called"));
}

TEST_F(SelectionOverlayManagerTest, a_window_without_a_view_is_skipped) {
    useTwoDisplays();
    open();
    manager.windows().at(0)->setContentView(nullptr);
    manager.toggleWindowMode();
    EXPECT_TRUE(state(1).isWindowMode);
}

TEST_F(SelectionOverlayManagerTest, what_was_queued_for_a_manager_that_is_gone_does_nothing) {
    auto shortLived = std::make_unique<overlay::SelectionOverlayManager>(
        overlay::SelectionOverlayManager::Mediator{.workspace = workspace,
                                                   .displays = displays,
                                                   .surfaces = surfaces,
                                                   .keyboardTap = keyboard,
                                                   .pointer = pointer,
                                                   .captureService = service,
                                                   .screenCapture = screenCapture,
                                                   .mainQueue = queue,
                                                   .log = log});
    shortLived->showSelection(CaptureMode::screenshot);
    keyboard.press(escape);
    keyboard.press(space);
    surfaces.openSurfaces().at(0)->release({0, 0});
    shortLived.reset();
    calls.clear();
    queue.runAll();
    EXPECT_THAT(calls.calls(), IsEmpty());
}

TEST(SharedSelectionOverlayManagerDeathTest, needs_the_program_to_be_composed) {
    EXPECT_DEATH(overlay::SelectionOverlayManager::shared(), "before the program was composed");
}

}  // namespace
