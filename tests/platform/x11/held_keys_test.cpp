#include "platform/x11/held_keys.h"

#include <gtest/gtest.h>

namespace {

using platform::x11::HeldKeys;

constexpr xcb_keycode_t key = 10;

TEST(HeldKeys, a_press_without_a_release_before_it_is_a_repeat) {
    HeldKeys keys;
    EXPECT_EQ(keys.press(key, 1000), HeldKeys::Press::first);
    EXPECT_EQ(keys.press(key, 1660), HeldKeys::Press::repeat);
    EXPECT_EQ(keys.press(key, 1700), HeldKeys::Press::repeat);
}

TEST(HeldKeys, a_press_after_the_release_is_a_first_one) {
    HeldKeys keys;
    keys.press(key, 1000);
    keys.release(key);
    EXPECT_EQ(keys.press(key, 1010), HeldKeys::Press::first);
}

TEST(HeldKeys, the_repeats_of_a_hot_key_are_told_apart_until_it_is_up) {
    HeldKeys keys;
    keys.press(key, 1000);
    keys.markHotKey(key);
    EXPECT_TRUE(keys.isHotKeyHeld());
    EXPECT_EQ(keys.press(key, 1660), HeldKeys::Press::repeatOfHotKey);
    keys.release(key);
    EXPECT_FALSE(keys.isHotKeyHeld());
    EXPECT_EQ(keys.press(key, 1700), HeldKeys::Press::first);
    EXPECT_EQ(keys.press(key, 1730), HeldKeys::Press::repeat);
}

TEST(HeldKeys, a_press_long_after_the_last_is_a_first_one_although_no_release_was_seen) {
    HeldKeys keys;
    keys.press(key, 1000);
    keys.markHotKey(key);
    EXPECT_EQ(keys.press(key, 3900), HeldKeys::Press::repeatOfHotKey);
    EXPECT_EQ(keys.press(key, 7000), HeldKeys::Press::first);
    EXPECT_FALSE(keys.isHotKeyHeld());
}

TEST(HeldKeys, the_wrap_around_of_the_servers_clock_makes_no_difference) {
    HeldKeys keys;
    EXPECT_EQ(keys.press(key, 0xFFFFFF00), HeldKeys::Press::first);
    EXPECT_EQ(keys.press(key, 100), HeldKeys::Press::repeat);
}

TEST(HeldKeys, keys_that_are_up_can_be_forgotten) {
    HeldKeys keys;
    keys.press(key, 1000);
    keys.press(11, 1000);
    keys.markHotKey(key);
    std::bitset<256> down;
    down.set(11);
    keys.keepOnly(down);
    EXPECT_FALSE(keys.isHotKeyHeld());
    EXPECT_EQ(keys.press(key, 1100), HeldKeys::Press::first);
    EXPECT_EQ(keys.press(11, 1100), HeldKeys::Press::repeat);
    keys.releaseAll();
    EXPECT_EQ(keys.press(11, 1200), HeldKeys::Press::first);
}

TEST(HeldKeys, every_key_is_by_itself) {
    HeldKeys keys;
    for (int code = 0; code < 256; ++code) {
        EXPECT_EQ(keys.press(static_cast<xcb_keycode_t>(code), 10), HeldKeys::Press::first);
    }
}

}  // namespace
