#include "contracts/key_monitor_contract.h"

#include <gmock/gmock.h>

namespace contracts {
namespace {

using shortcuts::KeyEvent;
using shortcuts::KeyEventType;
using shortcuts::KeyVerdict;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t keyA = 0;
constexpr std::uint32_t nine = 25;
constexpr std::uint32_t escape = 53;
constexpr std::uint32_t leftShift = 56;
constexpr std::uint32_t commandShift = shortcuts::commandFlag | shortcuts::shiftFlag;

/// A handler that keeps the key-downs it is given and always answers the same.
shortcuts::KeyMonitor::Handler keepIn(std::vector<std::uint32_t>& keys, KeyVerdict verdict) {
    return [&keys, verdict](const KeyEvent& event) {
        if (event.type == KeyEventType::keyDown) {
            keys.push_back(event.keyCode);
        }
        return verdict;
    };
}

TEST_P(KeyMonitorContract, a_key_down_comes_with_its_code_and_its_modifiers) {
    std::vector<KeyEvent> keyDowns;
    const auto installed = world_->monitor().install([&](const KeyEvent& event) {
        if (event.type == KeyEventType::keyDown) {
            keyDowns.push_back(event);
        }
        return KeyVerdict::pass;
    });
    world_->press(keyA);
    world_->pressWithCommandShift(nine);
    ASSERT_EQ(keyDowns.size(), 2U);
    EXPECT_EQ(keyDowns[0].keyCode, keyA);
    EXPECT_EQ(keyDowns[0].modifierFlags & commandShift, 0U);
    EXPECT_EQ(keyDowns[1].keyCode, nine);
    EXPECT_EQ(keyDowns[1].modifierFlags & commandShift, commandShift);
}

TEST_P(KeyMonitorContract, a_swallowed_key_does_not_reach_the_control_and_another_does) {
    std::vector<std::uint32_t> keys;
    {
        const auto installed = world_->monitor().install(keepIn(keys, KeyVerdict::swallow));
        world_->press(escape);
        EXPECT_THAT(world_->takeReached(), IsEmpty());
    }
    const auto installed = world_->monitor().install(keepIn(keys, KeyVerdict::pass));
    world_->press(escape);
    EXPECT_THAT(world_->takeReached(), ElementsAre(escape));
    EXPECT_THAT(keys, ElementsAre(escape, escape));
}

TEST_P(KeyMonitorContract, a_modifier_key_alone_is_a_change_of_the_flags) {
    std::vector<KeyEvent> events;
    const auto installed = world_->monitor().install([&](const KeyEvent& event) {
        events.push_back(event);
        return KeyVerdict::pass;
    });
    world_->pressLeftShiftAlone();
    ASSERT_EQ(events.size(), 2U);
    for (const KeyEvent& event : events) {
        EXPECT_EQ(event.type, KeyEventType::flagsChanged);
        EXPECT_EQ(event.keyCode, leftShift);
    }
    EXPECT_EQ(events[0].modifierFlags & shortcuts::shiftFlag, shortcuts::shiftFlag);
    EXPECT_EQ(events[1].modifierFlags & shortcuts::shiftFlag, 0U);
}

TEST_P(KeyMonitorContract, a_monitor_that_is_gone_sees_nothing) {
    std::vector<std::uint32_t> keys;
    auto installed = world_->monitor().install(keepIn(keys, KeyVerdict::swallow));
    installed.reset();
    world_->press(keyA);
    EXPECT_THAT(keys, IsEmpty());
    EXPECT_THAT(world_->takeReached(), ElementsAre(keyA));
}

TEST_P(KeyMonitorContract, the_newest_is_asked_first_and_the_older_when_it_lets_pass) {
    std::vector<std::uint32_t> older;
    std::vector<std::uint32_t> newer;
    const auto first = world_->monitor().install(keepIn(older, KeyVerdict::swallow));
    {
        const auto second = world_->monitor().install(keepIn(newer, KeyVerdict::swallow));
        world_->press(keyA);
    }
    EXPECT_THAT(newer, ElementsAre(keyA));
    EXPECT_THAT(older, IsEmpty());
    const auto third = world_->monitor().install(keepIn(newer, KeyVerdict::pass));
    world_->press(nine);
    EXPECT_THAT(newer, ElementsAre(keyA, nine));
    EXPECT_THAT(older, ElementsAre(nine));
}

TEST_P(KeyMonitorContract, a_monitor_may_end_itself_in_its_handler) {
    std::unique_ptr<shortcuts::InstalledKeyMonitor> installed;
    int calls = 0;
    installed = world_->monitor().install([&](const KeyEvent&) {
        ++calls;
        installed.reset();
        return KeyVerdict::swallow;
    });
    world_->press(keyA);
    EXPECT_THAT(world_->takeReached(), IsEmpty());
    world_->press(nine);
    EXPECT_THAT(world_->takeReached(), ElementsAre(nine));
    EXPECT_EQ(calls, 1);
}

TEST_P(KeyMonitorContract, keys_for_another_program_are_not_seen) {
    std::vector<std::uint32_t> keys;
    const auto installed = world_->monitor().install(keepIn(keys, KeyVerdict::swallow));
    world_->giveInputAway();
    world_->press(keyA);
    EXPECT_THAT(keys, IsEmpty());
    world_->takeInputBack();
    world_->press(nine);
    EXPECT_THAT(keys, ElementsAre(nine));
}

}  // namespace
}  // namespace contracts
