#include "contracts/login_item_service_contract.h"

namespace contracts {
namespace {

using ui::LoginItemStatus;

TEST_P(LoginItemServiceContract, at_first_nothing_is_registered) {
    EXPECT_EQ(service().status(), LoginItemStatus::notRegistered);
}

TEST_P(LoginItemServiceContract, a_registered_item_is_enabled_until_it_is_unregistered) {
    ASSERT_TRUE(service().registerItem());
    EXPECT_EQ(service().status(), LoginItemStatus::enabled);
    ASSERT_TRUE(service().unregisterItem());
    EXPECT_EQ(service().status(), LoginItemStatus::notRegistered);
}

TEST_P(LoginItemServiceContract, doing_it_twice_succeeds_and_changes_nothing) {
    ASSERT_TRUE(service().unregisterItem());
    EXPECT_EQ(service().status(), LoginItemStatus::notRegistered);
    ASSERT_TRUE(service().registerItem());
    ASSERT_TRUE(service().registerItem());
    EXPECT_EQ(service().status(), LoginItemStatus::enabled);
}

TEST_P(LoginItemServiceContract, an_item_that_was_switched_off_elsewhere_is_not_enabled) {
    ASSERT_TRUE(service().registerItem());
    world_->switchOffElsewhere();
    EXPECT_EQ(service().status(), LoginItemStatus::requiresApproval);
}

TEST_P(LoginItemServiceContract, registering_turns_an_item_that_was_switched_off_on) {
    ASSERT_TRUE(service().registerItem());
    world_->switchOffElsewhere();
    ASSERT_TRUE(service().registerItem());
    EXPECT_EQ(service().status(), LoginItemStatus::enabled);
}

TEST_P(LoginItemServiceContract, a_failed_registration_says_why_and_leaves_the_status) {
    world_->breakMedium();
    const base::Status registered = service().registerItem();
    ASSERT_FALSE(registered);
    EXPECT_FALSE(registered.error().sentence.empty());
    EXPECT_EQ(service().status(), LoginItemStatus::notRegistered);
}

TEST_P(LoginItemServiceContract, a_failed_removal_says_why_and_leaves_the_status) {
    ASSERT_TRUE(service().registerItem());
    world_->breakMedium();
    const base::Status unregistered = service().unregisterItem();
    ASSERT_FALSE(unregistered);
    EXPECT_FALSE(unregistered.error().sentence.empty());
    EXPECT_EQ(service().status(), LoginItemStatus::enabled);
}

}  // namespace
}  // namespace contracts
