// Desktops that lack something, or where another program was first.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "journeys/overlay_colors.h"
#include "journeys/session.h"

namespace journeys {
namespace {

namespace key = desktop::key;
using desktop::difference;
using testing::IsEmpty;

constexpr std::uint16_t superAndShift = XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT;

void expectACapture(Session& session) {
    const Picture expected = session.screen({200, 150, 300, 200});
    session.openOverlay();
    const std::size_t before = session.mark();
    session.input().drag({200, 150}, {500, 350});
    session.waitForLine(line::saved, before);
    EXPECT_EQ(difference(expected, session.clipboardPicture().picture), "equal");
    session.waitUntilClosed();
}

TEST(TakenKey, the_screenshot_shortcut_says_its_status_and_recognition_still_works) {
    Session session;
    session.writeSettings(nlohmann::json::object());
    auto& client = session.desktop().client();
    xcb_grab_key(client.get(), 1, client.root(), superAndShift, key::digit1, XCB_GRAB_MODE_ASYNC,
                 XCB_GRAB_MODE_ASYNC);
    client.synchronize();
    session.start();
    EXPECT_GE(session.countSince(0, "❌ Failed to register screenshot shortcut. Status: -9878"), 1U);
    const auto lines = session.linesSince(0);
    for (std::size_t index = 0; index < lines.size(); ++index) {
        if (lines[index].starts_with("❌ Failed to register screenshot shortcut.")) {
            EXPECT_EQ(lines.at(index + 1),
                      "   This might be because Cmd+Shift+1 is already used by macOS.");
        }
    }
    EXPECT_EQ(session.countSince(0, "✅ Screenshot shortcut registered"), 0U);
    const std::size_t before = session.mark();
    session.pressScreenshotShortcut();
    session.pressRecognitionShortcut();
    session.program().waitForLine("Cmd+Shift+2 pressed - OCR Mode", before);
    session.waitUntilOpen();
    EXPECT_EQ(session.countSince(before, "🟡 HotKey event received!"), 1U);
}

TEST(TakenKey, the_same_combination_for_both_shortcuts_is_refused_the_second_time) {
    Session session;
    session.writeSettings({{"ocrKeyCode", 18}});
    session.startWithoutWaiting();
    session.program().waitForLine("❌ Failed to register OCR shortcut. Status: -9878");
    session.program().waitForLine(line::becameActive);
    // Both later registrations: the screenshot shortcut still works.
    session.require("The end of the start", [&] {
        const std::size_t lines = session.mark();
        return desktop::staysTrue([&] { return session.mark() == lines; },
                                  std::chrono::milliseconds(350));
    });
    const std::size_t before = session.mark();
    session.pressScreenshotShortcut();
    session.program().waitForLine(line::showSelectionCalled, before);
    EXPECT_EQ(session.countSince(before, "🟡 HotKey event received! ID: 1"), 1U);
}

class GrabbedKeyboard : public testing::Test {
  protected:
    GrabbedKeyboard() {
        session.writeSettings(nlohmann::json::object());
        session.start();
        auto& client = session.desktop().client();
        const xcb_grab_keyboard_cookie_t cookie =
            xcb_grab_keyboard(client.get(), 0, client.root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC,
                              XCB_GRAB_MODE_ASYNC);
        const desktop::Reply<xcb_grab_keyboard_reply_t> reply(
            xcb_grab_keyboard_reply(client.get(), cookie, nullptr));
        EXPECT_TRUE(reply && reply->status == XCB_GRAB_STATUS_SUCCESS);
    }
    void release() {
        auto& client = session.desktop().client();
        xcb_ungrab_keyboard(client.get(), XCB_CURRENT_TIME);
        client.synchronize();
    }
    void openByAction() {
        const std::size_t before = session.mark();
        session.desktop().bus({"activate-action", "screenshot"});
        session.program().waitForLine(line::showSelectionCalled, before);
        session.waitUntilOpen();
        EXPECT_EQ(session.countSince(before, "🟡 HotKey event received! ID: 1"), 1U);
        EXPECT_EQ(session.countSince(before, "🟡 Dispatching to takeScreenshot()"), 1U);
    }

    Session session;
};

constexpr const char* noTap =
    "Failed to create event tap. Ensure Accessibility permissions are granted.";

TEST_F(GrabbedKeyboard, the_overlay_opens_without_its_tap_and_the_drag_works) {
    const std::size_t before = session.mark();
    openByAction();
    EXPECT_EQ(session.countSince(before, noTap), 1U);
    session.input().drag({200, 150}, {500, 350});
    session.waitForLine(line::saved, before);
    EXPECT_EQ(
        difference(session.wallpaper().cut(200, 150, 300, 200), session.clipboardPicture().picture),
        "equal");
    session.waitUntilClosed();
}

TEST_F(GrabbedKeyboard, a_click_closes) {
    openByAction();
    session.input().click({400, 300});
    session.waitUntilClosed();
}

TEST_F(GrabbedKeyboard, once_the_other_grab_ends_space_and_escape_reach_the_overlay_itself) {
    openByAction();
    release();
    const std::size_t before = session.mark();
    const Picture undimmed = session.screen({20, 700, 4, 4});
    session.input().tap(key::space);
    EXPECT_TRUE(desktop::waitUntil([&] { return session.screen({20, 700, 4, 4}) != undimmed; }));
    EXPECT_EQ(session.countSince(before, line::toggled), 0U)
        << "Without a tap the window toggles its own view.";
    session.input().tap(key::escape);
    session.waitUntilClosed();
    EXPECT_TRUE(
        desktop::waitUntil([&] { return session.countSince(before, line::cursorRestored) == 1U; }));
}

TEST_F(GrabbedKeyboard, a_grab_that_ends_in_time_does_not_cost_the_tap) {
    const std::size_t before = session.mark();
    session.desktop().bus({"activate-action", "screenshot"});
    release();
    session.program().waitForLine(line::showSelectionCalled, before);
    EXPECT_EQ(session.countSince(before, noTap), 0U);
    session.waitUntilOpen();
    session.input().tap(key::space);
    session.program().waitForLine(line::toggled, before);
}

TEST(ByAction, the_recognition_action_is_a_press_of_the_other_shortcut) {
    Session session;
    session.writeSettings(nlohmann::json::object());
    session.start();
    const std::size_t before = session.mark();
    session.desktop().bus({"activate-action", "recognize-text"});
    session.program().waitForLine("Cmd+Shift+2 pressed - OCR Mode", before);
    session.waitUntilOpen();
    EXPECT_EQ(session.countSince(before, "🟡 HotKey event received! ID: 2"), 1U);
}

TEST(MissingServices, without_a_notification_daemon_nothing_is_delayed_or_said) {
    Session session;
    session.writeSettings({{"showNotifications", true}});
    session.start();
    session.openOverlay();
    const std::size_t before = session.mark();
    const auto released = std::chrono::steady_clock::now();
    session.input().drag({200, 150}, {500, 350});
    session.waitForLine(line::saved, before);
    // Two orders of magnitude under the time after which a call to a missing service gives up.
    EXPECT_LT(std::chrono::steady_clock::now() - released, std::chrono::seconds(2));
    EXPECT_TRUE(desktop::staysTrue([&] { return session.program().isRunning(); },
                                   std::chrono::milliseconds(300)));
    EXPECT_THAT(session.program().errorLines(), IsEmpty());
    expectACapture(session);
}

TEST(MissingServices, without_a_sound_server_no_line_is_printed_and_captures_go_on) {
    Session session;
    session.writeSettings({{"playSounds", true}});
    session.start();
    const std::size_t before = session.mark();
    for (int round = 0; round < 3; ++round) {
        expectACapture(session);
    }
    EXPECT_EQ(session.countSince(before, "Failed to play sound"), 0U);
    EXPECT_THAT(session.program().errorLines(), IsEmpty());
}

TEST(MissingServices, without_a_window_manager_the_road_is_the_same) {
    Session session({.windowManager = desktop::WindowManager::none});
    session.writeSettings(nlohmann::json::object());
    session.start(SettingsWindow::leftOpen);
    desktop::TestWindow window(session.desktop().displayName(), {.x = 600, .y = 400});
    window.focus();
    session.waitUntilStill();
    expectACapture(session);
    session.openOverlay();
    window.takeKeys();
    session.input().tap(key::a);
    EXPECT_THAT(window.takeKeys(), IsEmpty());
    session.input().tap(key::escape);
    session.waitUntilClosed();
    EXPECT_TRUE(
        desktop::waitUntil([&] { return session.desktop().client().inputFocus() == window.id(); }));
}

TEST(MissingServices, without_a_window_manager_a_window_can_be_chosen) {
    Session session({.windowManager = desktop::WindowManager::none});
    session.writeSettings({{"captureShadows", false}});
    session.start(SettingsWindow::leftOpen);
    desktop::TestWindow window(session.desktop().displayName(), {.x = 600, .y = 400});
    window.focus();
    session.waitUntilStill();
    session.openOverlay();
    std::size_t before = session.mark();
    session.input().moveTo({700, 500});
    session.input().tap(key::space);
    session.program().waitForLine(line::toggled, before);
    session.require("The highlight", [&] {
        return isHighlighted(session.screen({600, 400, 1, 1}).pixels[0], window.picture().at(0, 0));
    });
    before = session.mark();
    session.input().pressButton();
    session.input().releaseButton();
    EXPECT_EQ(session.waitForLine(line::windowCopied, before), std::to_string(window.id()));
    EXPECT_EQ(difference(window.picture(), session.clipboardPicture().picture), "equal");
}

TEST(MissingServices, without_a_session_bus_the_program_still_captures) {
    Session session;
    session.writeSettings({{"showNotifications", true}});
    session.start(SettingsWindow::closed, {{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere"}});
    expectACapture(session);
}

TEST(ChangingDesktop, a_compositor_that_comes_or_goes_changes_only_how_the_overlay_looks) {
    Session session;
    session.writeSettings(nlohmann::json::object());
    session.start();
    expectACapture(session);
    session.desktop().startCompositor(desktop::Compositor::picom);
    session.require("The wallpaper under the compositor", [&] {
        return session.screen({0, 0, 1280, 800}) == session.wallpaper();
    });
    expectACapture(session);
    session.desktop().stopCompositor();
    expectACapture(session);
}

}  // namespace
}  // namespace journeys
