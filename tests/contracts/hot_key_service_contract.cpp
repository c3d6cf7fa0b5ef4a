#include "contracts/hot_key_service_contract.h"

#include <gmock/gmock.h>

#include <vector>

namespace contracts {
namespace {

using shortcuts::commandModifier;
using shortcuts::eventHotKeyExistsErr;
using shortcuts::EventHotKeyID;
using shortcuts::noErr;
using shortcuts::paramErr;
using shortcuts::shiftModifier;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t keyOne = 18;
constexpr std::uint32_t keyTwo = 19;
constexpr std::uint32_t commandShift = commandModifier | shiftModifier;
constexpr EventHotKeyID first{0x42415231, 1};
constexpr EventHotKeyID second{0x42415231, 2};

/// A handler that keeps what it is given.
class Presses {
  public:
    shortcuts::HotKeyService::Handler handler() {
        return [this](EventHotKeyID hotKeyID) {
            ids_.push_back(hotKeyID.id);
            signatures_.push_back(hotKeyID.signature);
            return noErr;
        };
    }
    [[nodiscard]] const std::vector<std::uint32_t>& ids() const { return ids_; }
    [[nodiscard]] const std::vector<std::uint32_t>& signatures() const { return signatures_; }

  private:
    std::vector<std::uint32_t> ids_;
    std::vector<std::uint32_t> signatures_;
};

TEST_P(HotKeyServiceContract, a_press_is_reported_once_with_its_identity) {
    Presses presses;
    EXPECT_EQ(world_->service().registerHotKey(keyOne, commandShift, first).status, noErr);
    EXPECT_EQ(world_->service().installEventHandler(presses.handler()).status, noErr);
    world_->press(keyOne, commandShift);
    EXPECT_THAT(presses.ids(), ElementsAre(1));
    EXPECT_THAT(presses.signatures(), ElementsAre(first.signature));
}

TEST_P(HotKeyServiceContract, two_hot_keys_are_told_apart) {
    Presses presses;
    world_->service().registerHotKey(keyOne, commandShift, first);
    world_->service().registerHotKey(keyTwo, commandShift, second);
    world_->service().installEventHandler(presses.handler());
    world_->press(keyTwo, commandShift);
    world_->press(keyOne, commandShift);
    world_->press(keyTwo, commandShift);
    EXPECT_THAT(presses.ids(), ElementsAre(2, 1, 2));
}

TEST_P(HotKeyServiceContract, other_modifiers_are_another_combination) {
    Presses presses;
    world_->service().registerHotKey(keyOne, commandShift, first);
    EXPECT_EQ(world_->service().registerHotKey(keyOne, commandModifier, second).status, noErr);
    world_->service().installEventHandler(presses.handler());
    world_->press(keyOne, shortcuts::optionModifier | shiftModifier);
    world_->press(keyOne, commandModifier);
    EXPECT_THAT(presses.ids(), ElementsAre(2));
}

TEST_P(HotKeyServiceContract, a_press_without_a_handler_has_no_effect) {
    Presses presses;
    world_->service().registerHotKey(keyOne, commandShift, first);
    world_->press(keyOne, commandShift);
    world_->service().installEventHandler(presses.handler());
    EXPECT_THAT(presses.ids(), IsEmpty());
}

TEST_P(HotKeyServiceContract, a_removed_handler_gets_no_more_presses) {
    Presses presses;
    world_->service().registerHotKey(keyOne, commandShift, first);
    const auto handler = world_->service().installEventHandler(presses.handler());
    EXPECT_EQ(world_->service().removeEventHandler(handler.ref), noErr);
    EXPECT_NE(world_->service().removeEventHandler(handler.ref), noErr);
    world_->press(keyOne, commandShift);
    EXPECT_THAT(presses.ids(), IsEmpty());
}

TEST_P(HotKeyServiceContract, a_second_registration_of_the_same_combination_is_refused) {
    Presses presses;
    world_->service().registerHotKey(keyOne, commandShift, first);
    EXPECT_EQ(world_->service().registerHotKey(keyOne, commandShift, second).status,
              eventHotKeyExistsErr);
    world_->service().installEventHandler(presses.handler());
    world_->press(keyOne, commandShift);
    EXPECT_THAT(presses.ids(), ElementsAre(1));
}

TEST_P(HotKeyServiceContract, an_unregistered_hot_key_is_silent_and_can_be_registered_again) {
    Presses presses;
    const auto hotKey = world_->service().registerHotKey(keyOne, commandShift, first);
    world_->service().installEventHandler(presses.handler());
    EXPECT_EQ(world_->service().unregisterHotKey(hotKey.ref), noErr);
    world_->press(keyOne, commandShift);
    EXPECT_THAT(presses.ids(), IsEmpty());
    EXPECT_EQ(world_->service().registerHotKey(keyOne, commandShift, second).status, noErr);
    world_->press(keyOne, commandShift);
    EXPECT_THAT(presses.ids(), ElementsAre(2));
}

TEST_P(HotKeyServiceContract, unregistering_twice_fails_the_second_time) {
    const auto hotKey = world_->service().registerHotKey(keyOne, commandShift, first);
    EXPECT_EQ(world_->service().unregisterHotKey(hotKey.ref), noErr);
    EXPECT_NE(world_->service().unregisterHotKey(hotKey.ref), noErr);
}

TEST_P(HotKeyServiceContract, a_key_that_does_not_exist_is_refused) {
    EXPECT_EQ(world_->service().registerHotKey(world_->missingKey(), commandShift, first).status,
              paramErr);
}

TEST_P(HotKeyServiceContract, a_combination_of_another_program_is_refused) {
    world_->takeByOther(keyOne, commandShift);
    EXPECT_EQ(world_->service().registerHotKey(keyOne, commandShift, first).status,
              eventHotKeyExistsErr);
    EXPECT_EQ(world_->service().registerHotKey(keyTwo, commandShift, second).status, noErr);
}

TEST_P(HotKeyServiceContract, a_combination_that_another_program_let_go_can_be_registered) {
    Presses presses;
    world_->takeByOther(keyOne, commandShift);
    world_->service().registerHotKey(keyOne, commandShift, first);
    world_->letGoByOther(keyOne, commandShift);
    EXPECT_EQ(world_->service().registerHotKey(keyOne, commandShift, first).status, noErr);
    world_->service().installEventHandler(presses.handler());
    world_->press(keyOne, commandShift);
    EXPECT_THAT(presses.ids(), ElementsAre(1));
}

}  // namespace
}  // namespace contracts
