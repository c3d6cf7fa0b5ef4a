#include "platform/x11/x11_hot_key_service.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "desktop/test_window.h"
#include "desktop/wait.h"
#include "platform/x11/private_keyboard.h"

namespace platform::x11 {
namespace {

namespace key = desktop::key;
using shortcuts::commandModifier;
using shortcuts::eventHotKeyExistsErr;
using shortcuts::noErr;
using shortcuts::paramErr;
using shortcuts::shiftModifier;
using test::OtherProgram;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t keyOne = 18;
constexpr std::uint32_t commandShift = commandModifier | shiftModifier;
constexpr std::uint16_t superShift = XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT;
const std::vector<std::uint8_t> shortcut{key::leftSuper, key::leftShift, key::digit1};

class X11HotKeyServiceTest : public testing::Test {
  protected:
    X11HotKeyServiceTest() {
        service().installEventHandler([this](shortcuts::EventHotKeyID hotKeyID) {
            presses_.push_back(hotKeyID.id);
            return noErr;
        });
    }
    shortcuts::HotKeyService& service() { return keyboard_.hotKeys(); }
    shortcuts::HotKeyService::Registration<shortcuts::HotKeyRef> registerShortcut() {
        return service().registerHotKey(keyOne, commandShift, {1, 1});
    }
    void pressChord(const std::vector<std::uint8_t>& keys) {
        keyboard_.hands().chord(keys);
        keyboard_.settle();
    }
    void pressAll(const std::vector<std::uint8_t>& keys) {
        for (const auto keycode : keys) {
            keyboard_.hands().press(keycode);
        }
        keyboard_.settle();
    }
    void releaseAll(const std::vector<std::uint8_t>& keys) {
        for (const auto keycode : keys) {
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

    test::PrivateKeyboard keyboard_;
    std::vector<std::uint32_t> presses_;
};

TEST_F(X11HotKeyServiceTest, caps_and_num_lock_make_no_difference) {
    ASSERT_EQ(registerShortcut().status, noErr);
    keyboard_.hands().tap(key::capsLock);
    pressChord(shortcut);
    EXPECT_THAT(presses_, ElementsAre(1));
    keyboard_.hands().tap(key::numLock);
    pressChord(shortcut);
    EXPECT_THAT(presses_, ElementsAre(1, 1));
    keyboard_.hands().tap(key::capsLock);
    pressChord(shortcut);
    EXPECT_THAT(presses_, ElementsAre(1, 1, 1));
}

TEST_F(X11HotKeyServiceTest, scroll_lock_on_a_modifier_makes_no_difference) {
    keyboard_.run({"xmodmap", "-e", "add mod3 = Scroll_Lock"});
    ASSERT_EQ(registerShortcut().status, noErr);
    keyboard_.hands().tap(78);
    pressChord(shortcut);
    EXPECT_THAT(presses_, ElementsAre(1));
}

class Layouts : public X11HotKeyServiceTest, public testing::WithParamInterface<const char*> {};

TEST_P(Layouts, the_position_counts_and_not_the_letter) {
    keyboard_.run({"setxkbmap", GetParam()});
    ASSERT_EQ(registerShortcut().status, noErr);
    // 0 is the key that types A on an American keyboard, 13 the one that types W.
    ASSERT_EQ(service().registerHotKey(0, commandModifier, {1, 2}).status, noErr);
    pressChord(shortcut);
    pressChord({key::leftSuper, key::a});
    EXPECT_THAT(presses_, ElementsAre(1, 2));
}

TEST_P(Layouts, a_change_of_the_layout_keeps_a_hot_key_working) {
    ASSERT_EQ(registerShortcut().status, noErr);
    keyboard_.run({"setxkbmap", GetParam()});
    pressChord(shortcut);
    EXPECT_THAT(presses_, ElementsAre(1));
}

INSTANTIATE_TEST_SUITE_P(Keyboard, Layouts, testing::Values("us", "de", "fr", "ru", "dvorak"));

TEST_F(X11HotKeyServiceTest, the_second_layout_group_makes_no_difference) {
    keyboard_.run({"setxkbmap", "-layout", "us,ru", "-option", "grp:caps_toggle"});
    ASSERT_EQ(registerShortcut().status, noErr);
    keyboard_.hands().tap(key::capsLock);
    pressChord(shortcut);
    EXPECT_THAT(presses_, ElementsAre(1));
}

TEST_F(X11HotKeyServiceTest, a_modifier_that_moves_takes_the_hot_key_along) {
    ASSERT_EQ(registerShortcut().status, noErr);
    keyboard_.run({"xmodmap", "-e", "clear mod4", "-e", "add mod3 = Super_L"});
    pressChord(shortcut);
    EXPECT_THAT(presses_, ElementsAre(1));
    OtherProgram other(keyboard_.displayName());
    EXPECT_EQ(other.grabKey(key::digit1, superShift), OtherProgram::Answer::granted);
}

TEST_F(X11HotKeyServiceTest, a_modifier_that_goes_and_comes_back_brings_the_hot_key_back) {
    ASSERT_EQ(registerShortcut().status, noErr);
    keyboard_.run({"xmodmap", "-e", "clear mod4"});
    EXPECT_EQ(service().registerHotKey(19, commandShift, {1, 2}).status, paramErr);
    pressChord(shortcut);
    EXPECT_THAT(presses_, IsEmpty());
    keyboard_.run({"xmodmap", "-e", "add mod4 = Super_L"});
    pressChord(shortcut);
    EXPECT_THAT(presses_, ElementsAre(1));
}

TEST_F(X11HotKeyServiceTest, unknown_modifier_bits_are_refused) {
    EXPECT_EQ(service().registerHotKey(keyOne, commandShift | 1024, {1, 1}).status, paramErr);
    EXPECT_EQ(service().registerHotKey(keyOne, 0x80000000, {1, 1}).status, paramErr);
    EXPECT_EQ(service().registerHotKey(keyOne, 1, {1, 1}).status, paramErr);
}

TEST_F(X11HotKeyServiceTest, keys_that_no_keyboard_has_are_refused) {
    for (const std::uint32_t keyCode : {52U, 63U, 127U, 0xFFFFU, 0xFFFFFFFFU}) {
        EXPECT_EQ(service().registerHotKey(keyCode, commandShift, {1, 1}).status, paramErr);
    }
}

TEST_F(X11HotKeyServiceTest, a_registration_that_fails_part_way_leaves_no_grab_behind) {
    OtherProgram other(keyboard_.displayName());
    const std::uint16_t withNumLock = superShift | XCB_MOD_MASK_2;
    ASSERT_EQ(other.grabKey(key::digit1, withNumLock), OtherProgram::Answer::granted);
    EXPECT_EQ(registerShortcut().status, eventHotKeyExistsErr);
    keyboard_.settle();
    for (const unsigned locks : {0U, 2U, 18U}) {
        EXPECT_EQ(other.grabKey(key::digit1, static_cast<std::uint16_t>(superShift | locks)),
                  OtherProgram::Answer::granted);
    }
    pressChord(shortcut);
    EXPECT_THAT(presses_, IsEmpty());
}

TEST_F(X11HotKeyServiceTest, registering_owns_and_unregistering_frees_every_set_of_locks) {
    const auto hotKey = registerShortcut();
    OtherProgram other(keyboard_.displayName());
    for (const unsigned locks : {0U, 2U, 16U, 18U}) {
        EXPECT_EQ(other.grabKey(key::digit1, static_cast<std::uint16_t>(superShift | locks)),
                  OtherProgram::Answer::refused);
    }
    EXPECT_EQ(service().unregisterHotKey(hotKey.ref), noErr);
    keyboard_.settle();
    for (const unsigned locks : {0U, 2U, 16U, 18U}) {
        EXPECT_EQ(other.grabKey(key::digit1, static_cast<std::uint16_t>(superShift | locks)),
                  OtherProgram::Answer::granted);
    }
}

TEST_F(X11HotKeyServiceTest, a_press_between_two_registrations_is_reported) {
    const auto hotKey = registerShortcut();
    service().unregisterHotKey(hotKey.ref);
    keyboard_.synchronize();
    keyboard_.hands().chord(shortcut);
    keyboard_.synchronize();
    EXPECT_EQ(registerShortcut().status, noErr);
    keyboard_.settle();
    EXPECT_THAT(presses_, ElementsAre(1));
}

TEST_F(X11HotKeyServiceTest, a_combination_registered_again_is_owned_until_it_is_unregistered) {
    auto hotKey = registerShortcut();
    OtherProgram other(keyboard_.displayName());
    for (int round = 0; round < 3; ++round) {
        service().unregisterHotKey(hotKey.ref);
        hotKey = registerShortcut();
        keyboard_.settle();
        EXPECT_EQ(other.grabKey(key::digit1, superShift), OtherProgram::Answer::refused);
    }
    service().unregisterHotKey(hotKey.ref);
    keyboard_.settle();
    EXPECT_EQ(other.grabKey(key::digit1, superShift), OtherProgram::Answer::granted);
}

TEST_F(X11HotKeyServiceTest, a_combination_left_for_another_is_free) {
    const auto hotKey = registerShortcut();
    service().unregisterHotKey(hotKey.ref);
    EXPECT_EQ(service().registerHotKey(keyOne + 1, commandShift, {1, 1}).status, noErr);
    keyboard_.settle();
    OtherProgram other(keyboard_.displayName());
    EXPECT_EQ(other.grabKey(key::digit1, superShift), OtherProgram::Answer::granted);
    EXPECT_EQ(other.grabKey(key::digit2, superShift), OtherProgram::Answer::refused);
}

TEST_F(X11HotKeyServiceTest, a_combination_is_free_again_when_its_owner_ended) {
    {
        OtherProgram other(keyboard_.displayName());
        ASSERT_EQ(other.grabKey(key::digit1, superShift), OtherProgram::Answer::granted);
        EXPECT_EQ(registerShortcut().status, eventHotKeyExistsErr);
    }
    ASSERT_TRUE(desktop::waitUntil([&] { return registerShortcut().status == noErr; }));
    pressChord(shortcut);
    EXPECT_THAT(presses_, ElementsAre(1));
}

TEST_F(X11HotKeyServiceTest, the_service_frees_its_combinations_at_its_end) {
    ASSERT_EQ(registerShortcut().status, noErr);
    keyboard_.endKeyboard();
    keyboard_.settle();
    OtherProgram other(keyboard_.displayName());
    EXPECT_EQ(other.grabKey(key::digit1, superShift), OtherProgram::Answer::granted);
}

TEST_F(X11HotKeyServiceTest, a_held_key_is_one_press) {
    keyboard_.run({"xset", "r", "rate", "30", "100"});
    ASSERT_EQ(registerShortcut().status, noErr);
    pressAll(shortcut);
    EXPECT_TRUE(repeatsFor(200));
    EXPECT_THAT(presses_, ElementsAre(1));
    releaseAll(shortcut);
    pressChord(shortcut);
    EXPECT_THAT(presses_, ElementsAre(1, 1));
}

TEST_F(X11HotKeyServiceTest, a_held_key_whose_modifiers_go_up_first_is_one_press) {
    keyboard_.run({"xset", "r", "rate", "30", "100"});
    ASSERT_EQ(registerShortcut().status, noErr);
    pressAll(shortcut);
    releaseAll({key::leftSuper, key::leftShift});
    EXPECT_TRUE(repeatsFor(200));
    releaseAll({key::digit1});
    pressChord(shortcut);
    EXPECT_THAT(presses_, ElementsAre(1, 1));
}

TEST_F(X11HotKeyServiceTest, a_second_hot_key_held_longer_than_the_first_is_one_press) {
    keyboard_.run({"xset", "r", "rate", "30", "100"});
    ASSERT_EQ(registerShortcut().status, noErr);
    ASSERT_EQ(service().registerHotKey(19, commandShift, {1, 2}).status, noErr);
    pressAll(shortcut);
    pressAll({key::digit2});
    releaseAll({key::digit1});
    EXPECT_TRUE(repeatsFor(200));
    EXPECT_THAT(presses_, ElementsAre(1, 2));
    releaseAll({key::digit2});
    OtherProgram other(keyboard_.displayName());
    EXPECT_EQ(other.grabKeyboard(), OtherProgram::Answer::granted);
}

TEST_F(X11HotKeyServiceTest, a_press_right_after_the_release_is_another_press) {
    ASSERT_EQ(registerShortcut().status, noErr);
    for (int press = 0; press < 10; ++press) {
        keyboard_.hands().chord(shortcut);
    }
    keyboard_.settle();
    EXPECT_EQ(presses_.size(), 10U);
}

TEST_F(X11HotKeyServiceTest, a_second_hot_key_pressed_while_the_first_is_held_is_reported) {
    ASSERT_EQ(registerShortcut().status, noErr);
    ASSERT_EQ(service().registerHotKey(19, commandShift, {1, 2}).status, noErr);
    pressChord({key::leftSuper, key::leftShift, key::digit1, key::digit2});
    EXPECT_THAT(presses_, ElementsAre(1, 2));
}

TEST_F(X11HotKeyServiceTest, a_key_event_made_up_by_another_program_is_no_press) {
    ASSERT_EQ(registerShortcut().status, noErr);
    // A window of this connection, so that the forged event finds its way here.
    (void)keyboard_.connection().serverTime();
    const auto mask = xcb_get_setup(keyboard_.connection().get())->resource_id_mask;
    const auto base = xcb_get_setup(keyboard_.connection().get())->resource_id_base;
    desktop::XClient other(keyboard_.displayName());
    const desktop::Reply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(other.get(), xcb_query_tree(other.get(), other.root()), nullptr));
    xcb_key_press_event_t forged{};
    forged.response_type = XCB_KEY_PRESS;
    forged.detail = key::digit1;
    forged.root = other.root();
    forged.event = other.root();
    forged.state = superShift;
    int sent = 0;
    for (int index = 0; index < xcb_query_tree_children_length(tree.get()); ++index) {
        const xcb_window_t window = xcb_query_tree_children(tree.get())[index];
        if ((window & ~mask) == base) {
            xcb_send_event(other.get(), 0, window, 0, reinterpret_cast<const char*>(&forged));
            ++sent;
        }
    }
    other.synchronize();
    keyboard_.settle();
    EXPECT_EQ(sent, 1);
    EXPECT_THAT(presses_, IsEmpty());
}

TEST_F(X11HotKeyServiceTest, the_newest_handler_is_asked_first_and_the_others_when_it_declines) {
    ASSERT_EQ(registerShortcut().status, noErr);
    std::vector<std::string> order;
    auto answer = shortcuts::OSStatus{noErr};
    service().installEventHandler([&](shortcuts::EventHotKeyID) {
        order.emplace_back("newest");
        return answer;
    });
    pressChord(shortcut);
    EXPECT_THAT(presses_, IsEmpty());
    answer = -9874;
    pressChord(shortcut);
    EXPECT_THAT(presses_, ElementsAre(1));
    EXPECT_EQ(order.size(), 2U);
}

TEST_F(X11HotKeyServiceTest, a_handler_may_register_everything_anew) {
    auto hotKey = registerShortcut();
    shortcuts::EventHandlerRef handler = 0;
    int calls = 0;
    handler = service()
                  .installEventHandler([&](shortcuts::EventHotKeyID) {
                      ++calls;
                      service().unregisterHotKey(hotKey.ref);
                      service().removeEventHandler(handler);
                      hotKey = registerShortcut();
                      return noErr;
                  })
                  .ref;
    pressChord(shortcut);
    pressChord(shortcut);
    EXPECT_EQ(calls, 1);
    EXPECT_THAT(presses_, ElementsAre(1));
}

}  // namespace
}  // namespace platform::x11
