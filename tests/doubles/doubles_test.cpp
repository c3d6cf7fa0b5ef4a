#include "doubles/doubles.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

using namespace std::chrono_literals;

TEST(ManualMainQueue, tasks_run_in_their_order_and_only_when_asked) {
    doubles::ManualMainQueue queue;
    std::string order;
    queue.post([&] { order += "a"; });
    queue.post([&] {
        order += "b";
        queue.post([&] { order += "d"; });
    });
    queue.post([&] { order += "c"; });
    EXPECT_EQ(order, "");
    EXPECT_TRUE(queue.runNext());
    EXPECT_EQ(order, "a");
    queue.runAll();
    EXPECT_EQ(order, "abcd");
    EXPECT_FALSE(queue.runNext());
}

TEST(ManualMainQueue, delayed_tasks_run_at_their_moment) {
    doubles::ManualMainQueue queue;
    std::string order;
    queue.postAfter(200ms, [&] { order += "c"; });
    queue.postAfter(100ms, [&] {
        order += "a";
        queue.postAfter(50ms, [&] { order += "b"; });
    });
    queue.advance(99ms);
    EXPECT_EQ(order, "");
    EXPECT_EQ(queue.remainingDelays(), (std::vector<std::chrono::milliseconds>{1ms, 101ms}));
    queue.advance(101ms);
    EXPECT_EQ(order, "abc");
}

TEST(ManualMainQueue, work_that_is_left_fails_the_test) {
    EXPECT_NONFATAL_FAILURE(
        {
            doubles::ManualMainQueue queue;
            queue.post([] {});
        },
        "tasks were left on the main queue");
    EXPECT_NONFATAL_FAILURE(
        {
            doubles::ManualMainQueue queue;
            queue.postAfter(1ms, [] {});
        },
        "delayed tasks were left on the main queue");
}

TEST(ManualMainQueue, work_may_be_left_where_the_test_says_so) {
    doubles::ManualMainQueue queue;
    queue.allowLeftovers();
    queue.post([] {});
}

TEST(CallLog, keeps_the_order_over_several_fakes) {
    doubles::CallLog calls;
    doubles::FakeLog log;
    doubles::FakePointer pointer;
    log.recordInto(calls);
    pointer.recordInto(calls);
    log.line("one");
    pointer.setCursor(overlay::Cursor::crosshair);
    log.line("two");
    EXPECT_EQ(calls.calls(),
              (std::vector<std::string>{"log: one", "cursor: crosshair", "log: two"}));
    EXPECT_EQ(calls.startingWith({"log: "}), (std::vector<std::string>{"log: one", "log: two"}));
}

TEST(FakeKeyboardTap, presses_reach_nobody_once_the_tap_is_gone) {
    doubles::FakeKeyboardTap keyboard;
    auto tap =
        keyboard.create([](const overlay::TapEvent&) { return overlay::TapVerdict::swallow; });
    ASSERT_TRUE(tap);
    EXPECT_EQ(keyboard.press(53), overlay::TapVerdict::swallow);
    tap.value().reset();
    EXPECT_EQ(keyboard.press(53), std::nullopt);
}

TEST(FakeHotKeyService, a_second_registration_of_the_same_combination_is_refused) {
    doubles::FakeHotKeyService hotKeys;
    const auto first = hotKeys.registerHotKey(18, 768, {1, 1});
    EXPECT_EQ(first.status, shortcuts::noErr);
    EXPECT_EQ(hotKeys.registerHotKey(18, 768, {1, 2}).status, shortcuts::eventHotKeyExistsErr);
    EXPECT_EQ(hotKeys.unregisterHotKey(first.ref), shortcuts::noErr);
    EXPECT_EQ(hotKeys.registerHotKey(18, 768, {1, 2}).status, shortcuts::noErr);
}
