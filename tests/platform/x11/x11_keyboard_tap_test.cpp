#include "platform/x11/x11_keyboard_tap.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "desktop/test_window.h"
#include "platform/x11/private_keyboard.h"

namespace platform::x11 {
namespace {

namespace key = desktop::key;
using namespace std::chrono_literals;
using overlay::TapVerdict;
using test::OtherProgram;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t keyOne = 18;
constexpr std::uint32_t commandShift = shortcuts::commandModifier | shortcuts::shiftModifier;

class X11KeyboardTapTest : public testing::Test {
  protected:
    X11KeyboardTapTest() {
        keyboard_.hotKeys().registerHotKey(keyOne, commandShift, {1, 1});
        keyboard_.hotKeys().installEventHandler([this](shortcuts::EventHotKeyID) {
            ++hotKeyPresses_;
            return shortcuts::noErr;
        });
    }
    std::unique_ptr<overlay::EventTap> makeTap(std::vector<std::uint32_t>& keys,
                                               TapVerdict verdict = TapVerdict::swallow) {
        auto tap = keyboard_.tap().create([&keys, verdict](const overlay::TapEvent& event) {
            EXPECT_EQ(event.type, overlay::TapEventType::keyDown);
            keys.push_back(event.keyCode);
            return verdict;
        });
        EXPECT_TRUE(tap.hasValue());
        return tap ? std::move(tap.value()) : nullptr;
    }
    void tapKey(std::uint8_t keycode) {
        keyboard_.hands().tap(keycode);
        keyboard_.settle();
    }
    void pressAll(const std::vector<std::uint8_t>& keycodes) {
        for (const auto keycode : keycodes) {
            keyboard_.hands().press(keycode);
        }
        keyboard_.settle();
    }
    void release(const std::vector<std::uint8_t>& keycodes) {
        for (const auto keycode : keycodes) {
            keyboard_.hands().release(keycode);
        }
        keyboard_.settle();
    }
    /// Lets a held key repeat for some milliseconds of the server's time; false when it does not.
    bool repeatsFor(xcb_timestamp_t milliseconds) {
        const auto begin = keyboard_.connection().lastInputTime();
        return keyboard_.settleUntil(
            [&] { return keyboard_.connection().lastInputTime() - begin > milliseconds; });
    }
    desktop::TestWindow makeWindow() {
        return desktop::TestWindow(
            keyboard_.displayName(),
            {.management = desktop::TestWindowOptions::Management::unmanaged});
    }

    test::PrivateKeyboard keyboard_;
    std::vector<std::uint32_t> keys_;
    int hotKeyPresses_ = 0;
};

TEST_F(X11KeyboardTapTest, every_key_down_comes_with_its_virtual_key_code) {
    const auto tap = makeTap(keys_);
    tapKey(key::space);
    tapKey(key::escape);
    tapKey(key::a);
    tapKey(key::returnKey);
    EXPECT_THAT(keys_, ElementsAre(49, 53, 0, 36));
}

TEST_F(X11KeyboardTapTest, the_code_is_the_position_in_every_layout) {
    keyboard_.run({"setxkbmap", "fr"});
    const auto tap = makeTap(keys_);
    tapKey(key::a);
    EXPECT_THAT(keys_, ElementsAre(0));
}

TEST_F(X11KeyboardTapTest, a_key_without_a_code_is_the_unknown_key) {
    const auto tap = makeTap(keys_);
    constexpr std::uint8_t f13 = 191;
    tapKey(f13);
    EXPECT_THAT(keys_, ElementsAre(overlay::unknownKeyCode));
}

TEST_F(X11KeyboardTapTest, modifier_keys_by_themselves_are_no_key_down) {
    const auto tap = makeTap(keys_);
    for (const auto keycode :
         {key::leftShift, key::leftSuper, key::leftAlt, key::leftControl, key::capsLock}) {
        tapKey(keycode);
    }
    EXPECT_THAT(keys_, IsEmpty());
}

TEST_F(X11KeyboardTapTest, a_key_with_modifiers_that_is_no_hot_key_comes_to_the_tap) {
    const auto tap = makeTap(keys_);
    keyboard_.hands().chord({key::leftSuper, key::digit1});
    keyboard_.settle();
    EXPECT_THAT(keys_, ElementsAre(keyOne));
    EXPECT_EQ(hotKeyPresses_, 0);
}

TEST_F(X11KeyboardTapTest, a_held_key_is_a_key_down_for_each_repeat) {
    keyboard_.run({"xset", "r", "rate", "30", "100"});
    const auto tap = makeTap(keys_);
    pressAll({key::a});
    EXPECT_TRUE(keyboard_.settleUntil([&] { return keys_.size() >= 4; }));
    release({key::a});
    EXPECT_THAT(keys_, testing::Each(0U));
}

TEST_F(X11KeyboardTapTest, other_windows_get_keys_only_without_a_tap) {
    auto window = makeWindow();
    window.focus();
    auto tap = makeTap(keys_);
    tapKey(key::a);
    EXPECT_THAT(window.takeKeys(), IsEmpty());
    tap.reset();
    keyboard_.settle();
    tapKey(key::a);
    EXPECT_THAT(window.takeKeys(), ElementsAre(key::a));
    EXPECT_EQ(keys_.size(), 1U);
}

TEST_F(X11KeyboardTapTest, a_press_that_passes_reaches_no_window_either) {
    auto window = makeWindow();
    window.focus();
    const auto tap = makeTap(keys_, TapVerdict::pass);
    tapKey(key::a);
    EXPECT_THAT(window.takeKeys(), IsEmpty());
    EXPECT_THAT(keys_, ElementsAre(0));
}

TEST_F(X11KeyboardTapTest, a_hot_key_is_a_hot_key_and_nothing_for_the_tap) {
    const auto tap = makeTap(keys_);
    keyboard_.hands().tap(key::numLock);
    keys_.clear();
    keyboard_.hands().chord({key::leftSuper, key::leftShift, key::digit1});
    keyboard_.settle();
    EXPECT_EQ(hotKeyPresses_, 1);
    EXPECT_THAT(keys_, Contains(71));  // Num Lock alone
    EXPECT_EQ(keys_.size(), 1U);
}

TEST_F(X11KeyboardTapTest, a_hot_key_held_under_the_tap_is_one_press_and_nothing_for_the_tap) {
    keyboard_.run({"xset", "r", "rate", "30", "100"});
    const auto tap = makeTap(keys_);
    pressAll({key::leftSuper, key::leftShift, key::digit1});
    EXPECT_TRUE(repeatsFor(200));
    EXPECT_EQ(hotKeyPresses_, 1);
    EXPECT_THAT(keys_, IsEmpty());
    release({key::digit1, key::leftShift, key::leftSuper});
}

TEST_F(X11KeyboardTapTest, a_hot_key_held_across_the_creation_of_a_tap_is_one_press) {
    keyboard_.run({"xset", "r", "rate", "30", "100"});
    pressAll({key::leftSuper, key::leftShift, key::digit1});
    const auto tap = makeTap(keys_);
    EXPECT_TRUE(repeatsFor(200));
    EXPECT_EQ(hotKeyPresses_, 1);
    EXPECT_THAT(keys_, IsEmpty());
    release({key::digit1, key::leftShift, key::leftSuper});
    tapKey(key::a);
    EXPECT_THAT(keys_, ElementsAre(0));
}

TEST_F(X11KeyboardTapTest, a_hot_key_still_held_when_the_tap_goes_reaches_no_one_until_it_is_up) {
    keyboard_.run({"xset", "r", "rate", "30", "100"});
    auto window = makeWindow();
    window.focus();
    auto tap = makeTap(keys_);
    pressAll({key::leftSuper, key::leftShift, key::digit1});
    tap.reset();
    keyboard_.synchronize();
    release({key::leftSuper, key::leftShift});
    EXPECT_TRUE(repeatsFor(200));
    EXPECT_THAT(window.takeKeys(), IsEmpty());
    release({key::digit1});
    tapKey(key::a);
    EXPECT_THAT(window.takeKeys(), ElementsAre(key::a));
    keyboard_.hands().chord({key::leftSuper, key::leftShift, key::digit1});
    keyboard_.settle();
    EXPECT_EQ(hotKeyPresses_, 2);
}

TEST_F(X11KeyboardTapTest, a_hot_key_released_unseen_before_the_tap_goes_gives_the_keyboard_back) {
    auto tap = makeTap(keys_);
    pressAll({key::leftSuper, key::leftShift, key::digit1});
    // Not settled: the releases wait unread when the tap goes.
    for (const auto keycode : {key::digit1, key::leftShift, key::leftSuper}) {
        keyboard_.hands().release(keycode);
    }
    tap.reset();
    keyboard_.settle();
    OtherProgram other(keyboard_.displayName());
    EXPECT_EQ(other.grabKeyboard(), OtherProgram::Answer::granted);
    other.ungrabKeyboard();
    keyboard_.settle();
    keyboard_.hands().chord({key::leftSuper, key::leftShift, key::digit1});
    keyboard_.settle();
    EXPECT_EQ(hotKeyPresses_, 2);
}

TEST_F(X11KeyboardTapTest,
       a_key_held_while_the_tap_goes_does_not_spoil_its_next_press_as_a_hot_key) {
    auto tap = makeTap(keys_);
    pressAll({key::digit1});
    tap.reset();
    keyboard_.synchronize();
    release({key::digit1});
    keyboard_.hands().chord({key::leftSuper, key::leftShift, key::digit1});
    keyboard_.settle();
    EXPECT_EQ(hotKeyPresses_, 1);
}

TEST_F(X11KeyboardTapTest, a_hot_key_pressed_just_before_the_tap_goes_counts) {
    auto tap = makeTap(keys_);
    keyboard_.hands().chord({key::leftSuper, key::leftShift, key::digit1});
    tap.reset();
    keyboard_.synchronize();
    keyboard_.settle();
    EXPECT_EQ(hotKeyPresses_, 1);
    keyboard_.hands().chord({key::leftSuper, key::leftShift, key::digit1});
    keyboard_.settle();
    EXPECT_EQ(hotKeyPresses_, 2);
}

TEST_F(X11KeyboardTapTest, presses_that_wait_unread_when_the_tap_goes_are_dropped) {
    auto tap = makeTap(keys_);
    keyboard_.hands().tap(key::a);
    tap.reset();
    keyboard_.synchronize();
    keyboard_.settle();
    EXPECT_THAT(keys_, IsEmpty());
}

TEST_F(X11KeyboardTapTest, a_press_that_waits_unread_when_the_tap_goes_starts_no_grab) {
    auto tap = makeTap(keys_);
    keyboard_.hands().press(key::a);
    tap.reset();
    keyboard_.settle();
    keyboard_.hands().release(key::a);
    OtherProgram other(keyboard_.displayName());
    ASSERT_EQ(other.grabKeyboard(), OtherProgram::Answer::granted);
    int calls = 0;
    keyboard_.tap().whenAvailable(100ms, [&] { ++calls; });
    keyboard_.queue().advance(50ms);
    EXPECT_EQ(calls, 0) << "the keyboard was taken for ours";
    keyboard_.queue().advance(50ms);
    EXPECT_EQ(calls, 1);
}

TEST_F(X11KeyboardTapTest, creation_is_refused_with_a_sentence_while_another_program_has_the_keys) {
    OtherProgram other(keyboard_.displayName());
    ASSERT_EQ(other.grabKeyboard(), OtherProgram::Answer::granted);
    const auto refused = keyboard_.tap().create([](const auto&) { return TapVerdict::swallow; });
    ASSERT_FALSE(refused.hasValue());
    EXPECT_EQ(refused.error().kind, base::ErrorKind::unavailable);
    EXPECT_FALSE(refused.error().sentence.empty());
    other.ungrabKeyboard();
    EXPECT_NE(makeTap(keys_), nullptr);
}

TEST_F(X11KeyboardTapTest, a_tap_that_ends_itself_in_its_own_handler_is_safe) {
    std::unique_ptr<overlay::EventTap> tap;
    int calls = 0;
    auto made = keyboard_.tap().create([&](const overlay::TapEvent&) {
        ++calls;
        tap.reset();
        return TapVerdict::swallow;
    });
    ASSERT_TRUE(made.hasValue());
    tap = std::move(made.value());
    tapKey(key::a);
    tapKey(key::a);
    EXPECT_EQ(calls, 1);
    OtherProgram other(keyboard_.displayName());
    EXPECT_EQ(other.grabKeyboard(), OtherProgram::Answer::granted);
}

TEST_F(X11KeyboardTapTest, the_newest_tap_is_asked_first_and_the_older_one_when_it_lets_pass) {
    std::vector<std::uint32_t> newer;
    const auto older = makeTap(keys_);
    auto swallowing = makeTap(newer);
    tapKey(key::a);
    EXPECT_THAT(newer, ElementsAre(0));
    EXPECT_THAT(keys_, IsEmpty());
    swallowing.reset();
    keyboard_.synchronize();
    const auto passing = makeTap(newer, TapVerdict::pass);
    tapKey(key::space);
    EXPECT_THAT(newer, ElementsAre(0, 49));
    EXPECT_THAT(keys_, ElementsAre(49));
}

TEST_F(X11KeyboardTapTest, the_keyboard_is_free_only_when_the_last_tap_is_gone) {
    auto older = makeTap(keys_);
    auto newer = makeTap(keys_);
    OtherProgram other(keyboard_.displayName());
    older.reset();
    keyboard_.synchronize();
    EXPECT_EQ(other.grabKeyboard(), OtherProgram::Answer::refused);
    newer.reset();
    keyboard_.settle();
    EXPECT_EQ(other.grabKeyboard(), OtherProgram::Answer::granted);
}

TEST_F(X11KeyboardTapTest, a_tap_made_in_the_turn_of_the_last_one_s_end_keeps_the_keyboard) {
    auto tap = makeTap(keys_);
    tap.reset();
    keyboard_.synchronize();
    OtherProgram other(keyboard_.displayName());
    EXPECT_EQ(other.grabKeyboard(), OtherProgram::Answer::refused);
    tap = makeTap(keys_);
    keyboard_.settle();
    EXPECT_EQ(other.grabKeyboard(), OtherProgram::Answer::refused);
    tapKey(key::a);
    EXPECT_EQ(keys_.size(), 1U);
}

TEST_F(X11KeyboardTapTest, a_tap_may_outlive_the_keyboard) {
    auto tap = makeTap(keys_);
    keyboard_.endKeyboard();
    OtherProgram other(keyboard_.displayName());
    keyboard_.settle();
    EXPECT_EQ(other.grabKeyboard(), OtherProgram::Answer::granted);
    tap.reset();
    keyboard_.synchronize();
}

TEST_F(X11KeyboardTapTest, a_free_keyboard_is_ready_in_a_later_turn_and_once) {
    int calls = 0;
    keyboard_.tap().whenAvailable(500ms, [&] { ++calls; });
    EXPECT_EQ(calls, 0);
    keyboard_.queue().runAll();
    EXPECT_EQ(calls, 1);
    keyboard_.queue().advance(1000ms);
    EXPECT_EQ(calls, 1);
    keyboard_.synchronize();
    OtherProgram other(keyboard_.displayName());
    EXPECT_EQ(other.grabKeyboard(), OtherProgram::Answer::granted);
}

TEST_F(X11KeyboardTapTest, a_keyboard_that_becomes_free_is_ready_soon_after) {
    OtherProgram other(keyboard_.displayName());
    ASSERT_EQ(other.grabKeyboard(), OtherProgram::Answer::granted);
    int calls = 0;
    keyboard_.tap().whenAvailable(500ms, [&] { ++calls; });
    keyboard_.queue().advance(200ms);
    EXPECT_EQ(calls, 0);
    other.ungrabKeyboard();
    keyboard_.queue().advance(20ms);
    EXPECT_EQ(calls, 1);
    EXPECT_NE(makeTap(keys_), nullptr);
}

TEST_F(X11KeyboardTapTest, a_keyboard_that_stays_taken_is_given_up_at_the_limit) {
    OtherProgram other(keyboard_.displayName());
    ASSERT_EQ(other.grabKeyboard(), OtherProgram::Answer::granted);
    int calls = 0;
    keyboard_.tap().whenAvailable(505ms, [&] { ++calls; });
    keyboard_.queue().advance(504ms);
    EXPECT_EQ(calls, 0);
    keyboard_.queue().advance(1ms);
    EXPECT_EQ(calls, 1);
    keyboard_.queue().advance(1000ms);
    EXPECT_EQ(calls, 1);
}

TEST_F(X11KeyboardTapTest, waiting_ends_in_silence_with_the_keyboard) {
    OtherProgram other(keyboard_.displayName());
    ASSERT_EQ(other.grabKeyboard(), OtherProgram::Answer::granted);
    int calls = 0;
    keyboard_.tap().whenAvailable(500ms, [&] { ++calls; });
    keyboard_.queue().advance(100ms);
    keyboard_.tap().whenAvailable(500ms, [&] { ++calls; });
    keyboard_.endKeyboard();
    keyboard_.queue().advance(1000ms);
    EXPECT_EQ(calls, 0);
}

}  // namespace
}  // namespace platform::x11
