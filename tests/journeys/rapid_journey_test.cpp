// Shortcuts and selections faster than the program finishes: nothing lost, doubled or left open.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include "journeys/session.h"

namespace journeys {
namespace {

namespace key = desktop::key;
using desktop::difference;

class Rapid : public testing::TestWithParam<desktop::Compositor> {
  protected:
    Rapid() {
        session.writeSettings(nlohmann::json::object());
        session.start();
    }
    void waitForDeliveries(std::size_t mark, std::size_t count) {
        session.require("The delivery of every picture", [&] {
            return session.countSince(mark, line::regionCopied) >= count &&
                   session.countSince(mark, line::saved) >= count;
        });
        EXPECT_TRUE(desktop::staysTrue(
            [&] { return session.countSince(mark, line::regionCopied) == count; },
            std::chrono::milliseconds(250)));
        EXPECT_EQ(session.countSince(mark, line::saved), count);
        session.waitUntilClosed();
    }
    void waitForOpenings(std::size_t mark, std::size_t count) {
        session.require("The opening of every overlay", [&] {
            return session.countSince(mark, line::showSelectionCalled) >= count;
        });
        session.waitUntilOpen();
    }

    Session session{{.compositor = GetParam()}};
    desktop::InputDriver& input = session.input();
};

INSTANTIATE_TEST_SUITE_P(Desktops, Rapid,
                         testing::Values(desktop::Compositor::none, desktop::Compositor::picom),
                         [](const auto& parameter) {
                             return parameter.param == desktop::Compositor::none ? "frozen"
                                                                                 : "live";
                         });

TEST_P(Rapid, the_shortcut_pressed_while_open_opens_a_fresh_overlay) {
    const Picture expected = session.screen({100, 110, 300, 200});
    const std::size_t before = session.mark();
    session.openOverlay();
    input.moveTo({600, 600});
    input.pressButton();
    input.moveInSteps({600, 600}, {700, 700});
    session.pressScreenshotShortcut();
    waitForOpenings(before, 2);
    input.releaseButton();
    session.waitUntilOpen();
    EXPECT_EQ(session.countSince(before, "🟡 HotKey event received! ID: 1"), 2U);
    const auto lines = session.linesSince(before);
    const auto secondOpening = std::find(lines.rbegin(), lines.rend(), line::cursorSet);
    EXPECT_EQ(*(secondOpening + 1), line::cursorRestored);
}

TEST_P(Rapid, after_a_second_shortcut_one_drag_is_one_picture) {
    const Picture expected = session.screen({100, 110, 300, 200});
    const std::size_t before = session.mark();
    session.openOverlay();
    session.pressScreenshotShortcut();
    waitForOpenings(before, 2);
    input.drag({100, 110}, {400, 310});
    waitForDeliveries(before, 1);
    EXPECT_EQ(difference(expected, session.clipboardPicture().picture), "equal");
}

TEST_P(Rapid, ten_presses_are_ten_openings_and_one_overlay) {
    const Picture expected = session.screen({100, 110, 300, 200});
    const std::size_t before = session.mark();
    for (int press = 0; press < 10; ++press) {
        session.pressScreenshotShortcut();
    }
    waitForOpenings(before, 10);
    EXPECT_TRUE(desktop::staysTrue(
        [&] { return session.countSince(before, "🟡 HotKey event received! ID: 1") == 10; },
        std::chrono::milliseconds(200)));
    EXPECT_EQ(session.countSince(before, line::cursorSet), 10U);
    session.require("One overlay to be left", [&] { return session.overlayWindows() == 1; });
    input.drag({100, 110}, {400, 310});
    waitForDeliveries(before, 1);
    EXPECT_EQ(difference(expected, session.clipboardPicture().picture), "equal");
}

TEST_P(Rapid, ten_presses_with_the_modifiers_held_are_ten_openings) {
    const std::size_t before = session.mark();
    input.press(key::leftSuper);
    input.press(key::leftShift);
    for (int press = 0; press < 10; ++press) {
        input.tap(key::digit1);
    }
    input.release(key::leftShift);
    input.release(key::leftSuper);
    waitForOpenings(before, 10);
    input.tap(key::escape);
    session.waitUntilClosed();
    EXPECT_EQ(session.countSince(before, "🟡 HotKey event received! ID: 1"), 10U);
}

TEST_P(Rapid, a_held_shortcut_is_one_press) {
    const std::size_t before = session.mark();
    input.press(key::leftSuper);
    input.press(key::leftShift);
    input.press(key::digit1);
    waitForOpenings(before, 1);
    // The server repeats a held key after 660 ms, every 40 ms.
    EXPECT_TRUE(desktop::staysTrue(
        [&] { return session.countSince(before, "🟡 HotKey event received! ID: 1") == 1; },
        std::chrono::milliseconds(1200)));
    input.release(key::digit1);
    input.release(key::leftShift);
    input.release(key::leftSuper);
}

TEST_P(Rapid, the_other_shortcut_while_open_changes_the_mode) {
    const std::size_t before = session.mark();
    session.openOverlay();
    session.pressRecognitionShortcut();
    session.require("The second opening",
                    [&] { return session.countSince(before, line::cursorSet) == 2; });
    EXPECT_EQ(session.countSince(before, "Cmd+Shift+2 pressed - OCR Mode"), 1U);
    session.waitUntilOpen();
    input.tap(key::escape);
    session.waitUntilClosed();
}

TEST_P(Rapid, selections_that_follow_each_other_at_once_are_all_delivered) {
    const std::size_t before = session.mark();
    for (int round = 1; round <= 5; ++round) {
        session.pressScreenshotShortcut();
        waitForOpenings(before, static_cast<std::size_t>(round));
        input.drag({100, 100}, {1100, 700}, 3);
    }
    waitForDeliveries(before, 5);
    EXPECT_EQ(difference(session.wallpaper().cut(100, 100, 1000, 600),
                         session.clipboardPicture().picture),
              "equal");
    EXPECT_LE(session.downloads().size(), 5U);
    EXPECT_GE(session.downloads().size(), 1U);
}

TEST(RapidUnderAStoppedCompositor,
     a_selection_finished_while_a_capture_is_in_flight_loses_neither) {
    Session session({.compositor = desktop::Compositor::picom});
    session.writeSettings(nlohmann::json::object());
    session.start();
    const std::size_t before = session.mark();
    session.openOverlay();
    session.input().moveTo({100, 100});
    session.input().pressButton();
    session.input().moveInSteps({100, 100}, {500, 400});
    // A compositor that does not repaint keeps the first capture waiting for a clear screen.
    session.desktop().compositor().signal(SIGSTOP);
    session.input().releaseButton();
    session.pressScreenshotShortcut();
    session.program().waitForLine(
        line::showSelectionCalled,
        session.program().waitForLine(line::showSelectionCalled, before) + 1);
    session.waitUntilOpen();
    session.input().drag({600, 300}, {800, 500});
    session.desktop().compositor().signal(SIGCONT);
    session.require("Both deliveries", [&] {
        return session.countSince(before, line::regionCopied) == 2 &&
               session.countSince(before, line::saved) == 2;
    });
    session.waitUntilClosed();
    const auto last = session.clipboardPicture().picture;
    EXPECT_EQ(last.width, 200);
    EXPECT_EQ(last.height, 200);
}

}  // namespace
}  // namespace journeys
