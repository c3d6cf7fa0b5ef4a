#include "contracts/permissions_contract.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace contracts {
namespace {

using testing::EndsWith;

/// One sentence for the user.
void expectSentence(const std::string& text) {
    EXPECT_THAT(text, EndsWith("."));
    EXPECT_EQ(std::ranges::count(text, '\n'), 0);
}

TEST_P(PermissionsContract, an_ordinary_session_grants_both_and_has_no_reason) {
    EXPECT_TRUE(permissions_.canCaptureScreen());
    EXPECT_TRUE(permissions_.isAccessibilityTrusted());
    EXPECT_EQ(permissions_.screenCaptureLimit(), "");
    EXPECT_EQ(permissions_.accessibilityLimit(), "");
}

TEST_P(PermissionsContract, while_another_program_holds_every_key_the_keys_alone_are_refused) {
    world_->holdEveryKey();
    EXPECT_TRUE(permissions_.canCaptureScreen());
    EXPECT_FALSE(permissions_.isAccessibilityTrusted());
    EXPECT_EQ(permissions_.screenCaptureLimit(), "");
    expectSentence(permissions_.accessibilityLimit());
}

TEST_P(PermissionsContract, each_question_is_answered_afresh) {
    world_->holdEveryKey();
    EXPECT_FALSE(permissions_.isAccessibilityTrusted());
    world_->letKeysGo();
    EXPECT_TRUE(permissions_.isAccessibilityTrusted());
    EXPECT_EQ(permissions_.accessibilityLimit(), "");
    world_->holdEveryKey();
    EXPECT_FALSE(permissions_.isAccessibilityTrusted());
}

TEST_P(PermissionsContract, a_distrusted_program_gets_neither_and_learns_why) {
    world_->distrust();
    EXPECT_FALSE(permissions_.canCaptureScreen());
    EXPECT_FALSE(permissions_.isAccessibilityTrusted());
    expectSentence(permissions_.screenCaptureLimit());
    expectSentence(permissions_.accessibilityLimit());
}

TEST_P(PermissionsContract, a_question_opens_nothing) {
    EXPECT_TRUE(permissions_.canCaptureScreen() && permissions_.isAccessibilityTrusted());
    world_->distrust();
    EXPECT_FALSE(permissions_.canCaptureScreen() || permissions_.isAccessibilityTrusted());
    EXPECT_EQ(world_->openedCount(), 0U);
}

TEST_P(PermissionsContract, each_page_opens_something_granted_or_not) {
    const std::string pane = "x-apple.systempreferences:com.apple.preference.security?";
    std::size_t count = 0;
    const auto openEach = [&] {
        for (const char* page :
             {"Privacy_ScreenCapture", "Privacy_Accessibility", "Privacy_FilesAndFolders"}) {
            permissions_.openSettingsPage(pane + page);
            EXPECT_EQ(world_->openedCount(), ++count) << page;
        }
    };
    openEach();
    world_->holdEveryKey();
    openEach();
    world_->letKeysGo();
    world_->distrust();
    openEach();
}

}  // namespace
}  // namespace contracts
