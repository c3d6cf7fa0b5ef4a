// Giving up, and what the keyboard does while the overlay is open.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include "journeys/session.h"

namespace journeys {
namespace {

namespace key = desktop::key;
using testing::ElementsAre;
using testing::IsEmpty;

class Cancel : public testing::TestWithParam<desktop::Compositor> {
  protected:
    Cancel() {
        session.writeSettings(nlohmann::json::object());
        session.start();
        window = std::make_unique<desktop::TestWindow>(
            session.desktop().displayName(), desktop::TestWindowOptions{.x = 200, .y = 150});
        window->focus();
        session.waitUntilStill();
    }
    /// Nothing was captured, nothing is left, and the keys go to the window again.
    void expectNothingHappened(std::size_t mark, std::size_t closes) {
        session.waitUntilClosed();
        // Time for a delivery that must not come.
        EXPECT_TRUE(
            desktop::staysTrue([&] { return session.countSince(mark, line::regionCopied) == 0; },
                               std::chrono::milliseconds(200)));
        EXPECT_EQ(session.countSince(mark, line::cursorRestored), closes);
        EXPECT_THAT(session.downloads(), IsEmpty());
        EXPECT_FALSE(session.clipboard().isOwned());
        EXPECT_TRUE(desktop::waitUntil(
            [&] { return session.desktop().client().inputFocus() == window->id(); }));
        window->takeKeys();
        session.input().tap(key::a);
        EXPECT_THAT(window->takeKeys(), ElementsAre(key::a));
    }

    Session session{{.compositor = GetParam()}};
    desktop::InputDriver& input = session.input();
    std::unique_ptr<desktop::TestWindow> window;
};

INSTANTIATE_TEST_SUITE_P(Desktops, Cancel,
                         testing::Values(desktop::Compositor::none, desktop::Compositor::picom),
                         [](const auto& parameter) {
                             return parameter.param == desktop::Compositor::none ? "frozen"
                                                                                 : "live";
                         });

TEST_P(Cancel, escape_closes_and_captures_nothing) {
    session.openOverlay();
    const std::size_t before = session.mark();
    input.tap(key::escape);
    expectNothingHappened(before, 1);
}

TEST_P(Cancel, escape_in_the_middle_of_a_drag_captures_nothing) {
    const Picture screen = session.screen({0, 0, 1280, 800});
    session.openOverlay();
    const std::size_t before = session.mark();
    input.moveTo({100, 100});
    input.pressButton();
    input.moveInSteps({100, 100}, {400, 300});
    input.tap(key::escape);
    session.waitUntilClosed();
    input.releaseButton();
    expectNothingHappened(before, 1);
    EXPECT_TRUE(desktop::waitUntil([&] { return session.screen({0, 0, 1280, 800}) == screen; }));
}

TEST_P(Cancel, escape_counts_before_a_release_that_comes_right_behind_it) {
    session.openOverlay();
    const std::size_t before = session.mark();
    input.moveTo({100, 100});
    input.pressButton();
    input.moveInSteps({100, 100}, {400, 300});
    // A busy program finds both when it looks again.
    session.program().signal(SIGSTOP);
    input.tap(key::escape);
    input.releaseButton();
    session.program().signal(SIGCONT);
    expectNothingHappened(before, 1);
}

TEST_P(Cancel, escape_in_window_mode_captures_nothing) {
    session.openOverlay();
    const std::size_t before = session.mark();
    input.tap(key::space);
    session.program().waitForLine(line::toggled, before);
    input.tap(key::escape);
    expectNothingHappened(before, 1);
}

TEST_P(Cancel, a_press_without_a_drag_captures_nothing) {
    session.openOverlay();
    const std::size_t before = session.mark();
    input.click({400, 300});
    expectNothingHappened(before, 2);
}

TEST_P(Cancel, a_drag_of_2_points_captures_nothing) {
    session.openOverlay();
    const std::size_t before = session.mark();
    input.drag({400, 300}, {402, 360});
    expectNothingHappened(before, 2);
}

TEST_P(Cancel, a_drag_of_3_points_is_captured) {
    const Picture expected = session.screen({400, 300, 3, 3});
    session.openOverlay();
    const std::size_t before = session.mark();
    input.drag({400, 300}, {403, 303});
    session.waitForLine(line::saved, before);
    EXPECT_EQ(desktop::difference(expected, session.clipboardPicture().picture), "equal");
}

TEST_P(Cancel, keys_reach_no_other_window_while_the_overlay_is_open) {
    session.openOverlay();
    window->takeKeys();
    for (const std::uint8_t code : {key::a, key::returnKey, key::tab, key::digit1}) {
        input.tap(code);
    }
    input.chord({key::leftControl, key::a});
    EXPECT_THAT(window->takeKeys(), IsEmpty());
    EXPECT_TRUE(session.isOpen());
    const std::size_t before = session.mark();
    input.tap(key::escape);
    expectNothingHappened(before, 1);
    EXPECT_THAT(window->takeKeys(), IsEmpty());
}

TEST_P(Cancel, the_window_in_front_keeps_the_focus_and_its_looks) {
    session.openOverlay();
    EXPECT_EQ(session.desktop().client().inputFocus(), window->id());
    EXPECT_EQ(session.activeWindow(), window->id());
}

TEST_P(Cancel, nothing_is_drawn_before_the_first_drag) {
    const Picture screen = session.screen({0, 0, 1280, 800});
    session.openOverlay();
    input.moveInSteps({400, 300}, {500, 350});
    EXPECT_TRUE(desktop::staysTrue(
        [&] {
            return session.screen({0, 0, 1280, 800}) == screen;
        },
        std::chrono::milliseconds(150)));
}

}  // namespace
}  // namespace journeys
