#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "platform/x11/key_monitor_fixture.h"

namespace platform::x11 {
namespace {

namespace key = desktop::key;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Who has the keyboard when the input focus moves and when others want it.
class X11KeyMonitorFocusTest : public fixtures::KeyMonitorFixture {};

TEST_F(X11KeyMonitorFocusTest, the_keyboard_is_let_go_at_once_when_the_focus_leaves) {
    auto other = makeOtherWindow();
    watch(KeyVerdict::swallow);
    other.focus();
    settle();
    EXPECT_TRUE(isKeyboardFree());
    chord({key::a});
    EXPECT_THAT(other.takeKeys(), ElementsAre(key::a));
    EXPECT_THAT(events_, IsEmpty());
    window_.takeFocus();
    EXPECT_FALSE(isKeyboardFree());
    chord({key::a});
    EXPECT_THAT(keyDowns(), SizeIs(1));
}

TEST_F(X11KeyMonitorFocusTest, a_key_that_follows_the_leaving_focus_at_once_is_not_taken_for_ours) {
    auto other = makeOtherWindow();
    watch(KeyVerdict::pass);
    other.focus();
    // Nothing has told the monitor yet, and its window still holds the keyboard.
    chord({key::leftSuper, key::a});
    EXPECT_THAT(events_, IsEmpty());
    EXPECT_THAT(window_.takePresses(), IsEmpty());
    chord({key::a});
    EXPECT_THAT(other.takeKeys(), ElementsAre(key::a));
    window_.takeFocus();
    chord({key::a});
    EXPECT_THAT(keyDowns(), SizeIs(1));
    EXPECT_THAT(window_.takePresses(), ElementsAre(key::a));
}

TEST_F(X11KeyMonitorFocusTest, a_key_held_while_the_focus_leaves_is_not_waited_for) {
    auto other = makeOtherWindow();
    record();
    press(key::a);
    EXPECT_FALSE(isKeyboardFree());
    other.focus();
    settle();
    EXPECT_TRUE(isKeyboardFree());
    release(key::a);
    window_.takeFocus();
    press(key::a);
    EXPECT_THAT(window_.takePresses(), ElementsAre(key::a));
    release(key::a);
}

TEST_F(X11KeyMonitorFocusTest, a_monitor_that_is_installed_without_the_focus_waits_for_it) {
    auto other = makeOtherWindow();
    other.focus();
    settle();
    watch(KeyVerdict::swallow);
    EXPECT_TRUE(isKeyboardFree());
    chord({key::a});
    EXPECT_THAT(other.takeKeys(), ElementsAre(key::a));
    window_.takeFocus();
    chord({key::a});
    EXPECT_THAT(keyDowns(), SizeIs(1));
}

TEST_F(X11KeyMonitorFocusTest, while_another_program_holds_the_keyboard_it_is_waited_for) {
    OtherProgram other(keyboard_.displayName());
    ASSERT_EQ(other.grabKeyboard(), OtherProgram::Answer::granted);
    settle();
    watch(KeyVerdict::swallow);
    chord({key::a});
    EXPECT_THAT(events_, IsEmpty());
    other.ungrabKeyboard();
    settle();
    EXPECT_FALSE(isKeyboardFree());
    chord({key::leftSuper, key::leftShift, key::digit1});
    EXPECT_THAT(keyDowns(), SizeIs(1));
    EXPECT_EQ(hotKeyPresses_, 0);
}

TEST_F(X11KeyMonitorFocusTest, the_overlay_takes_the_keyboard_and_gives_it_back) {
    watch(KeyVerdict::swallow);
    std::vector<std::uint32_t> tapped;
    auto tap = keyboard_.tap().create([&](const overlay::TapEvent& event) {
        tapped.push_back(event.keyCode);
        return overlay::TapVerdict::swallow;
    });
    ASSERT_TRUE(tap);
    settle();
    chord({key::escape});
    EXPECT_THAT(tapped, ElementsAre(53));
    EXPECT_THAT(events_, IsEmpty());
    tap.value().reset();
    settle();
    chord({key::escape});
    EXPECT_THAT(keyDowns(), SizeIs(1));
    EXPECT_THAT(tapped, SizeIs(1));
}

TEST_F(X11KeyMonitorFocusTest, the_keyboard_is_taken_again_after_a_menu_of_the_toolkit) {
    watch(KeyVerdict::swallow);
    window_.openAndCloseMenu();
    EXPECT_FALSE(isKeyboardFree());
    chord({key::leftSuper, key::leftShift, key::digit1});
    EXPECT_THAT(keyDowns(), SizeIs(1));
    EXPECT_EQ(hotKeyPresses_, 0);
}

TEST_F(X11KeyMonitorFocusTest, asking_whether_the_keyboard_is_free_disturbs_nothing) {
    watch(KeyVerdict::swallow);
    int answers = 0;
    keyboard_.tap().whenAvailable(std::chrono::milliseconds(0), [&] { ++answers; });
    settle();
    EXPECT_EQ(answers, 1);
    EXPECT_FALSE(isKeyboardFree());
}

}  // namespace
}  // namespace platform::x11
