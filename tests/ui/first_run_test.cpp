#include "ui/first_run.h"

#include <gmock/gmock.h>

#include "app/settings_keys.h"
#include "doubles/doubles.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using ui::FirstRunAction;
using ui::Permission;

class FirstRun : public testing::Test {
  protected:
    FirstRun() {
        permissions_.recordInto(calls_);
        fileManager_.recordInto(calls_);
    }
    std::vector<bool> statuses() {
        std::vector<bool> list;
        for (const Permission permission : ui::everyPermission) {
            list.push_back(firstRun_.isGranted(permission));
        }
        return list;
    }

    doubles::CallLog calls_;
    doubles::FakePermissions permissions_;
    doubles::FakeFileManager fileManager_;
    doubles::MemorySettingsBackend backend_;
    app::SettingsStore settings_{backend_};
    app::NotificationCenter notifications_;
    int refreshCount_ = 0;
    ui::FirstRun firstRun_{{.permissions = permissions_,
                            .fileManager = fileManager_,
                            .settings = settings_,
                            .notifications = notifications_},
                           [this] { ++refreshCount_; }};
};

TEST_F(FirstRun, nothing_is_granted_before_the_first_refresh) {
    EXPECT_THAT(statuses(), ElementsAre(false, false, false));
    EXPECT_THAT(calls_.calls(), testing::IsEmpty());
}

TEST_F(FirstRun, a_refresh_asks_for_all_three_in_their_order_whatever_is_missing) {
    permissions_.screenIsAllowed = false;
    permissions_.accessibilityIsTrusted = false;
    firstRun_.refreshStatus();
    EXPECT_THAT(calls_.calls(),
                ElementsAre("can capture screen", "is accessibility trusted",
                            "downloads directories", "is readable: /home/someone/Downloads"));
    EXPECT_THAT(statuses(), ElementsAre(false, false, true));
    EXPECT_EQ(refreshCount_, 1);
}

TEST_F(FirstRun, each_status_is_that_of_its_own_probe) {
    permissions_.screenIsAllowed = false;
    firstRun_.refreshStatus();
    EXPECT_THAT(statuses(), ElementsAre(false, true, true));
    permissions_.screenIsAllowed = true;
    permissions_.accessibilityIsTrusted = false;
    firstRun_.refreshStatus();
    EXPECT_THAT(statuses(), ElementsAre(true, false, true));
    permissions_.accessibilityIsTrusted = true;
    fileManager_.downloads.clear();
    firstRun_.refreshStatus();
    EXPECT_THAT(statuses(), ElementsAre(true, true, false));
}

TEST_F(FirstRun, each_activation_of_the_program_refreshes) {
    notifications_.post(app::applicationDidBecomeActiveNotification);
    EXPECT_THAT(statuses(), ElementsAre(true, true, true));
    fileManager_.unreadable.insert("/home/someone/Downloads");
    notifications_.post(app::applicationDidBecomeActiveNotification);
    EXPECT_THAT(statuses(), ElementsAre(true, true, false));
    EXPECT_EQ(refreshCount_, 2);
}

TEST_F(FirstRun, the_action_is_chosen_afresh_without_a_refresh) {
    EXPECT_EQ(firstRun_.actionToOffer(), FirstRunAction::getStarted);
    EXPECT_THAT(statuses(), ElementsAre(false, false, false));
    firstRun_.refreshStatus();
    fileManager_.downloads.clear();
    EXPECT_EQ(firstRun_.actionToOffer(), FirstRunAction::refreshStatus);
    EXPECT_THAT(statuses(), ElementsAre(true, true, true));
}

TEST_F(FirstRun, the_choice_of_the_action_stops_at_the_first_that_is_missing) {
    permissions_.accessibilityIsTrusted = false;
    EXPECT_EQ(firstRun_.actionToOffer(), FirstRunAction::refreshStatus);
    EXPECT_THAT(calls_.calls(), ElementsAre("can capture screen", "is accessibility trusted"));
    permissions_.screenIsAllowed = false;
    calls_.clear();
    EXPECT_EQ(firstRun_.actionToOffer(), FirstRunAction::refreshStatus);
    EXPECT_THAT(calls_.calls(), ElementsAre("can capture screen"));
}

TEST_F(FirstRun, getting_started_is_stored_before_the_window_is_asked_to_close) {
    bool wasStored = false;
    int closeCount = 0;
    const auto observation = notifications_.observe(app::closePermissionsWindowNotification, [&] {
        wasStored = settings_.boolForKey(app::keys::hasCompletedFirstRun);
        ++closeCount;
    });
    firstRun_.perform(FirstRunAction::getStarted);
    EXPECT_TRUE(wasStored);
    EXPECT_EQ(closeCount, 1);
    EXPECT_EQ(refreshCount_, 0);
}

TEST_F(FirstRun, refreshing_stores_nothing_and_closes_nothing) {
    int closeCount = 0;
    const auto observation =
        notifications_.observe(app::closePermissionsWindowNotification, [&] { ++closeCount; });
    firstRun_.perform(FirstRunAction::refreshStatus);
    EXPECT_EQ(refreshCount_, 1);
    EXPECT_EQ(closeCount, 0);
    EXPECT_TRUE(backend_.values.empty());
}

TEST_F(FirstRun, each_row_opens_its_own_page_of_the_settings) {
    for (const Permission permission : ui::everyPermission) {
        firstRun_.openSettingsPage(permission);
    }
    const std::string pane = "x-apple.systempreferences:com.apple.preference.security?";
    EXPECT_THAT(permissions_.openedPages,
                ElementsAre(pane + "Privacy_ScreenCapture", pane + "Privacy_Accessibility",
                            pane + "Privacy_FilesAndFolders"));
}

TEST_F(FirstRun, the_help_says_why_the_session_refuses) {
    permissions_.screenLimit = "This session does not.";
    permissions_.keyboardLimit = "Somebody else has them.";
    fileManager_.downloads.clear();
    EXPECT_THAT(firstRun_.help(Permission::screenRecording), EndsWith("\nThis session does not."));
    EXPECT_THAT(firstRun_.help(Permission::accessibility), EndsWith("\nSomebody else has them."));
    // The session has no part in the files.
    EXPECT_EQ(firstRun_.help(Permission::filesAndFolders),
              "Lumaframe saves into your Downloads folder.");
    firstRun_.refreshStatus();
    EXPECT_EQ(firstRun_.help(Permission::screenRecording),
              "Lumaframe reads the screen to take pictures of it.");
    EXPECT_EQ(firstRun_.help(Permission::accessibility),
              "Lumaframe listens for its shortcuts in every program.");
}

}  // namespace
