#include "platform/x11/x11_key_monitor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "desktop/wait.h"
#include "platform/x11/key_map.h"
#include "platform/x11/key_monitor_fixture.h"

namespace platform::x11 {
namespace {

namespace key = desktop::key;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class X11KeyMonitorTest : public fixtures::KeyMonitorFixture {};

TEST_F(X11KeyMonitorTest, the_focused_window_holds_the_keyboard_while_a_monitor_is_installed) {
    EXPECT_TRUE(isKeyboardFree());
    watch(KeyVerdict::pass);
    EXPECT_FALSE(isKeyboardFree());
    monitor_.reset();
    settle();
    EXPECT_TRUE(isKeyboardFree());
}

TEST_F(X11KeyMonitorTest, for_the_toolkit_the_focus_stays_where_it_is) {
    watch(KeyVerdict::pass);
    EXPECT_TRUE(window_.hasFocus());
    monitor_.reset();
    settle();
    EXPECT_TRUE(window_.hasFocus());
}

TEST_F(X11KeyMonitorTest, a_hot_key_of_this_program_is_seen_and_does_not_fire) {
    record();
    chord({key::leftSuper, key::leftShift, key::digit1});
    ASSERT_THAT(keyDowns(), SizeIs(1));
    EXPECT_EQ(keyDowns()[0].keyCode, keyOne);
    EXPECT_EQ(keyDowns()[0].modifierFlags, shortcuts::commandFlag | shortcuts::shiftFlag);
    EXPECT_EQ(hotKeyPresses_, 0);
    // It is registered all the same.
    chord({key::leftSuper, key::leftShift, key::digit1});
    EXPECT_EQ(hotKeyPresses_, 1);
}

TEST_F(X11KeyMonitorTest, a_key_that_another_program_has_grabbed_is_seen_and_nothing_else_happens) {
    OtherProgram other(keyboard_.displayName());
    ASSERT_EQ(other.grabKey(key::digit2, XCB_MOD_MASK_4), OtherProgram::Answer::granted);
    record();
    chord({key::leftSuper, key::digit2});
    EXPECT_THAT(keyDowns(), SizeIs(1));
    EXPECT_EQ(keyPressesOf(other), 0);
    chord({key::leftSuper, key::digit2});
    EXPECT_EQ(keyPressesOf(other), 1);
}

TEST_F(X11KeyMonitorTest, neither_the_press_nor_the_release_of_a_swallowed_key_reaches_the_window) {
    record();
    press(key::a);
    release(key::a);
    EXPECT_THAT(window_.takePresses(), IsEmpty());
    EXPECT_THAT(window_.takeReleases(), IsEmpty());
    press(key::tab);
    release(key::tab);
    EXPECT_THAT(window_.takePresses(), ElementsAre(key::tab));
    EXPECT_THAT(window_.takeReleases(), ElementsAre(key::tab));
}

TEST_F(X11KeyMonitorTest, a_key_that_passes_goes_its_usual_way) {
    watch(KeyVerdict::pass);
    chord({key::a});
    EXPECT_THAT(keyDowns(), SizeIs(1));
    EXPECT_THAT(window_.takePresses(), ElementsAre(key::a));
    EXPECT_THAT(window_.takeReleases(), ElementsAre(key::a));
}

TEST_F(X11KeyMonitorTest, a_key_without_a_code_goes_its_usual_way_unreported) {
    watch(KeyVerdict::swallow);
    constexpr std::uint8_t f13 = 191;
    chord({f13});
    EXPECT_THAT(events_, IsEmpty());
    EXPECT_THAT(window_.takePresses(), ElementsAre(f13));
}

TEST_F(X11KeyMonitorTest, modifier_keys_are_told_with_what_they_leave_on) {
    watch(KeyVerdict::pass);
    press(key::leftShift);
    press(key::leftAlt);
    release(key::leftShift);
    release(key::leftAlt);
    ASSERT_THAT(events_, SizeIs(4));
    EXPECT_THAT(keyDowns(), IsEmpty());
    EXPECT_EQ(events_[0].keyCode, 56U);
    EXPECT_EQ(events_[0].modifierFlags, shortcuts::shiftFlag);
    EXPECT_EQ(events_[1].keyCode, 58U);
    EXPECT_EQ(events_[1].modifierFlags, shortcuts::shiftFlag | shortcuts::optionFlag);
    EXPECT_EQ(events_[2].modifierFlags, shortcuts::optionFlag);
    EXPECT_EQ(events_[3].modifierFlags, 0U);
    EXPECT_THAT(window_.takePresses(), SizeIs(2));
}

TEST_F(X11KeyMonitorTest, locks_are_no_modifiers_but_the_caps_flag) {
    watch(KeyVerdict::swallow);
    chord({key::numLock});
    chord({key::capsLock});
    events_.clear();
    chord({key::leftSuper, key::a});
    ASSERT_THAT(keyDowns(), SizeIs(1));
    EXPECT_EQ(keyDowns()[0].modifierFlags, shortcuts::commandFlag | shortcuts::capsLockFlag);
}

TEST_F(X11KeyMonitorTest, the_repeats_of_a_swallowed_key_reach_nobody) {
    keyboard_.run({"xset", "r", "rate", "30", "100"});
    record();
    keyboard_.hands().press(key::leftSuper);
    keyboard_.hands().press(key::leftShift);
    press(key::digit1);
    ASSERT_THAT(keyDowns(), SizeIs(1));
    // Its hot key is the one that a repeat would fire.
    EXPECT_TRUE(desktop::staysTrue(
        [&] {
            settle();
            return hotKeyPresses_ == 0 && !isKeyboardFree();
        },
        std::chrono::milliseconds(300)));
    EXPECT_THAT(window_.takePresses(), ElementsAre(key::leftSuper, key::leftShift));
    EXPECT_THAT(window_.takeReleases(), IsEmpty());
    release(key::digit1);
    EXPECT_TRUE(settleUntil([&] { return isKeyboardFree(); }));
    press(key::digit1);
    EXPECT_TRUE(settleUntil([&] { return hotKeyPresses_ == 1; }));
    EXPECT_THAT(window_.takePresses(), IsEmpty());
    keyboard_.hands().release(key::digit1);
    keyboard_.hands().release(key::leftShift);
    release(key::leftSuper);
}

TEST_F(X11KeyMonitorTest, a_monitor_that_stays_is_told_of_a_held_key_once) {
    keyboard_.run({"xset", "r", "rate", "30", "100"});
    watch(KeyVerdict::swallow);
    press(key::a);
    EXPECT_TRUE(desktop::staysTrue(
        [&] {
            settle();
            return keyDowns().size() == 1;
        },
        std::chrono::milliseconds(200)));
    release(key::a);
    press(key::a);
    EXPECT_TRUE(settleUntil([&] { return keyDowns().size() == 2; }));
    release(key::a);
    EXPECT_THAT(window_.takePresses(), IsEmpty());
}

TEST_F(X11KeyMonitorTest, a_press_that_another_program_made_up_is_not_reported) {
    watch(KeyVerdict::swallow);
    OtherProgram other(keyboard_.displayName());
    xcb_key_press_event_t forged{};
    forged.response_type = XCB_KEY_PRESS;
    forged.detail = key::a;
    forged.root = other.client().root();
    forged.event = other.client().inputFocus();
    xcb_send_event(other.client().get(), 0, forged.event, XCB_EVENT_MASK_KEY_PRESS,
                   reinterpret_cast<const char*>(&forged));
    other.client().synchronize();
    settle();
    EXPECT_THAT(events_, IsEmpty());
}

TEST_F(X11KeyMonitorTest, a_monitor_may_outlive_the_port) {
    auto toolkit = std::make_unique<desktop::XClient>(keyboard_.displayName());
    auto port = std::make_unique<X11KeyMonitor>(toolkit->get(), keyboard_.ports().mapping(),
                                                keyboard_.queue());
    auto monitor = port->install([](const KeyEvent&) { return KeyVerdict::pass; });
    port.reset();
    toolkit.reset();
    monitor.reset();
}

/// Letters and symbols of ten layouts sit on other keys; what is recorded is the key.
class X11KeyMonitorLayoutTest : public X11KeyMonitorTest,
                                public testing::WithParamInterface<std::vector<std::string>> {};

TEST_P(X11KeyMonitorLayoutTest, a_key_is_its_position_in_every_layout) {
    std::vector<std::string> command{"setxkbmap"};
    command.insert(command.end(), GetParam().begin(), GetParam().end());
    keyboard_.run(command);
    settle();
    watch(KeyVerdict::swallow);
    // Keys whose letters differ most between layouts: Q, A, Z, Y, M, ";", "-", "`", 9 and, left of
    // Z on a keyboard of 105 keys, code 10.
    for (const std::uint32_t code : {12U, 0U, 6U, 16U, 46U, 41U, 27U, 50U, 25U, 10U, 83U}) {
        events_.clear();
        chord({key::leftSuper, key::leftShift, keycodeOf(code).value()});
        ASSERT_THAT(keyDowns(), SizeIs(1)) << code;
        EXPECT_EQ(keyDowns()[0].keyCode, code);
        EXPECT_EQ(keyDowns()[0].modifierFlags, shortcuts::commandFlag | shortcuts::shiftFlag);
    }
}

INSTANTIATE_TEST_SUITE_P(Layouts, X11KeyMonitorLayoutTest,
                         testing::ValuesIn(std::vector<std::vector<std::string>>{
                             {"us"},
                             {"de"},
                             {"fr"},
                             {"es"},
                             {"ru"},
                             {"gr"},
                             {"us", "dvorak"},
                             {"us", "colemak"},
                             {"cz"},
                             {"tr"},
                             {"jp"},
                             {"us,ru", "-option", "grp:win_space_toggle"}}),
                         [](const auto& layout) {
                             std::string name;
                             for (const char letter : testing::PrintToString(layout.param)) {
                                 name += std::isalnum(static_cast<unsigned char>(letter)) != 0
                                             ? std::string(1, letter)
                                             : std::string();
                             }
                             return name;
                         });

}  // namespace
}  // namespace platform::x11
