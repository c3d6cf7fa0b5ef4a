#include "contracts/keyboard_tap_contract.h"

#include <gmock/gmock.h>

#include <vector>

namespace contracts {
namespace {

using namespace std::chrono_literals;
using overlay::TapEvent;
using overlay::TapVerdict;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t space = 49;
constexpr std::uint32_t escape = 53;

/// A handler that keeps what it is given and always answers the same.
overlay::KeyboardTap::Handler keepIn(std::vector<std::uint32_t>& keys, TapVerdict verdict) {
    return [&keys, verdict](const TapEvent& event) {
        keys.push_back(event.keyCode);
        return verdict;
    };
}

TEST_P(KeyboardTapContract, a_tap_sees_every_key_down_by_its_code) {
    std::vector<std::uint32_t> keys;
    const auto tap = world_->tap().create(keepIn(keys, TapVerdict::swallow));
    ASSERT_TRUE(tap);
    world_->press(space);
    world_->press(escape);
    world_->press(space);
    EXPECT_THAT(keys, ElementsAre(space, escape, space));
}

TEST_P(KeyboardTapContract, a_tap_that_is_gone_sees_nothing) {
    std::vector<std::uint32_t> keys;
    auto tap = world_->tap().create(keepIn(keys, TapVerdict::swallow));
    ASSERT_TRUE(tap);
    tap.value().reset();
    world_->press(space);
    EXPECT_THAT(keys, IsEmpty());
}

TEST_P(KeyboardTapContract, the_newest_is_asked_first_and_the_older_when_it_lets_pass) {
    std::vector<std::uint32_t> older;
    std::vector<std::uint32_t> newer;
    const auto first = world_->tap().create(keepIn(older, TapVerdict::swallow));
    {
        const auto second = world_->tap().create(keepIn(newer, TapVerdict::swallow));
        world_->press(space);
    }
    EXPECT_THAT(newer, ElementsAre(space));
    EXPECT_THAT(older, IsEmpty());
    const auto third = world_->tap().create(keepIn(newer, TapVerdict::pass));
    world_->press(escape);
    EXPECT_THAT(newer, ElementsAre(space, escape));
    EXPECT_THAT(older, ElementsAre(escape));
}

TEST_P(KeyboardTapContract, a_tap_may_end_itself_in_its_handler) {
    std::unique_ptr<overlay::EventTap> tap;
    int calls = 0;
    auto created = world_->tap().create([&](const TapEvent&) {
        ++calls;
        tap.reset();
        return TapVerdict::swallow;
    });
    ASSERT_TRUE(created);
    tap = std::move(created.value());
    world_->press(space);
    world_->press(space);
    EXPECT_EQ(calls, 1);
}

TEST_P(KeyboardTapContract, creation_fails_with_a_sentence_while_somebody_else_holds_the_keyboard) {
    std::vector<std::uint32_t> keys;
    world_->takeByOther();
    const auto refused = world_->tap().create(keepIn(keys, TapVerdict::swallow));
    ASSERT_FALSE(refused);
    EXPECT_FALSE(refused.error().sentence.empty());
    world_->letGoByOther();
    const auto tap = world_->tap().create(keepIn(keys, TapVerdict::swallow));
    ASSERT_TRUE(tap);
    world_->press(space);
    EXPECT_THAT(keys, ElementsAre(space));
}

TEST_P(KeyboardTapContract, a_wait_for_a_free_keyboard_ends_in_a_later_turn_and_once) {
    int calls = 0;
    world_->tap().whenAvailable(500ms, [&] { ++calls; });
    EXPECT_EQ(calls, 0);
    world_->letTimePass();
    world_->letTimePass();
    EXPECT_EQ(calls, 1);
}

TEST_P(KeyboardTapContract, a_wait_for_a_taken_keyboard_ends_at_its_limit_and_once) {
    world_->takeByOther();
    int calls = 0;
    world_->tap().whenAvailable(500ms, [&] { ++calls; });
    EXPECT_EQ(calls, 0);
    world_->letTimePass();
    world_->letGoByOther();
    world_->letTimePass();
    EXPECT_EQ(calls, 1);
}

}  // namespace
}  // namespace contracts
