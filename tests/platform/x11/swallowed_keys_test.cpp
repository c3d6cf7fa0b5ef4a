#include "platform/x11/swallowed_keys.h"

#include <gtest/gtest.h>

namespace platform::x11 {
namespace {

constexpr xcb_keycode_t key = 18;

std::bitset<256> keymap(bool isDown) {
    std::bitset<256> down;
    down.set(key, isDown);
    return down;
}

bool isRepeat(const SwallowedKeys& keys, xcb_timestamp_t time, std::uint32_t sequence = 0) {
    xcb_key_press_event_t event{};
    event.detail = key;
    event.time = time;
    return keys.isRepeat(event, sequence);
}

TEST(SwallowedKeys, a_press_is_a_repeat_only_of_a_swallowed_key) {
    SwallowedKeys keys;
    EXPECT_FALSE(isRepeat(keys, 100));
    keys.add(key + 1);
    EXPECT_FALSE(isRepeat(keys, 130));
    keys.add(key);
    EXPECT_TRUE(isRepeat(keys, 130));
}

TEST(SwallowedKeys, the_release_of_another_key_is_not_theirs) {
    SwallowedKeys keys;
    keys.add(key);
    EXPECT_FALSE(keys.release(key + 1, 130));
    EXPECT_TRUE(keys.release(key, 130));
    EXPECT_FALSE(keys.release(key, 160));
}

TEST(SwallowedKeys, a_press_of_the_same_time_as_the_release_is_a_repeat) {
    SwallowedKeys keys;
    keys.add(key);
    keys.release(key, 130);
    EXPECT_TRUE(isRepeat(keys, 130));
    EXPECT_FALSE(isRepeat(keys, 131));
}

TEST(SwallowedKeys, a_press_made_before_the_key_was_found_up_may_still_be_a_repeat) {
    SwallowedKeys keys;
    keys.add(key);
    keys.release(key, 130);
    keys.settle(keymap(false), 1000);
    EXPECT_FALSE(keys.isAnyDown());
    EXPECT_TRUE(isRepeat(keys, 130, 999));
    EXPECT_FALSE(isRepeat(keys, 131, 999));
    EXPECT_FALSE(isRepeat(keys, 130, 1000));
}

TEST(SwallowedKeys, the_numbers_of_requests_wrap_around) {
    SwallowedKeys keys;
    keys.add(key);
    keys.release(key, 130);
    keys.settle(keymap(false), 2);
    EXPECT_TRUE(isRepeat(keys, 130, 0xFFFFFFFE));
}

TEST(SwallowedKeys, a_released_key_that_is_down_has_only_repeated) {
    SwallowedKeys keys;
    keys.add(key);
    keys.release(key, 130);
    EXPECT_FALSE(keys.isAnyDown());
    keys.settle(keymap(true), 1);
    EXPECT_TRUE(keys.isAnyDown());
    keys.release(key, 160);
    keys.settle(keymap(false), 2);
    EXPECT_FALSE(keys.isAnyDown());
}

TEST(SwallowedKeys, a_key_that_was_never_swallowed_may_be_down) {
    SwallowedKeys keys;
    keys.settle(keymap(true), 1);
    EXPECT_FALSE(keys.isAnyDown());
}

TEST(SwallowedKeys, a_press_that_passed_after_all_is_forgotten) {
    SwallowedKeys keys;
    keys.add(key);
    keys.remove(key);
    EXPECT_FALSE(keys.isAnyDown());
    EXPECT_FALSE(keys.release(key, 130));
}

TEST(SwallowedKeys, are_all_forgotten_at_once) {
    SwallowedKeys keys;
    keys.add(key);
    keys.release(key, 130);
    keys.add(key + 1);
    keys.clear();
    keys.settle(keymap(true), 1);
    EXPECT_FALSE(keys.isAnyDown());
    EXPECT_FALSE(isRepeat(keys, 130));
}

}  // namespace
}  // namespace platform::x11
