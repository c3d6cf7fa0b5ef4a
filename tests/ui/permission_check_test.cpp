#include "ui/permission_check.h"

#include <gmock/gmock.h>

#include "doubles/call_log.h"
#include "doubles/fake_file_manager.h"
#include "doubles/fake_permissions.h"
#include "doubles/fake_windows.h"
#include "ui/permission_probes.h"

namespace {

using testing::ElementsAre;

class PermissionCheck : public testing::Test {
  protected:
    PermissionCheck() {
        permissions_.recordInto(calls_);
        fileManager_.recordInto(calls_);
        windows_.recordInto(calls_);
    }
    std::vector<std::string> run() {
        ui::PermissionCheck(
            {.permissions = permissions_, .fileManager = fileManager_, .windows = windows_})
            .run();
        return calls_.calls();
    }

    doubles::CallLog calls_;
    doubles::FakePermissions permissions_;
    doubles::FakeFileManager fileManager_;
    doubles::FakeWindows windows_;
};

TEST_F(PermissionCheck, with_everything_granted_no_window_opens) {
    EXPECT_THAT(run(),
                ElementsAre("can capture screen", "is accessibility trusted",
                            "downloads directories", "is readable: /home/someone/Downloads"));
}

TEST_F(PermissionCheck, a_missing_screen_permission_skips_the_other_probes) {
    permissions_.screenIsAllowed = false;
    EXPECT_THAT(run(), ElementsAre("can capture screen", "open scene: permissions"));
}

TEST_F(PermissionCheck, a_missing_accessibility_permission_skips_the_files) {
    permissions_.accessibilityIsTrusted = false;
    EXPECT_THAT(run(), ElementsAre("can capture screen", "is accessibility trusted",
                                   "open scene: permissions"));
}

TEST_F(PermissionCheck, an_unreadable_downloads_folder_opens_the_window) {
    fileManager_.unreadable.insert("/home/someone/Downloads");
    EXPECT_THAT(run(), ElementsAre("can capture screen", "is accessibility trusted",
                                   "downloads directories", "is readable: /home/someone/Downloads",
                                   "open scene: permissions"));
}

TEST_F(PermissionCheck, a_user_without_a_downloads_folder_gets_the_window_too) {
    fileManager_.downloads.clear();
    EXPECT_THAT(run(), ElementsAre("can capture screen", "is accessibility trusted",
                                   "downloads directories", "open scene: permissions"));
}

TEST_F(PermissionCheck, only_the_first_downloads_folder_counts) {
    fileManager_.downloads = {"/gone", "/home/someone/Downloads"};
    EXPECT_FALSE(ui::isDownloadsReadable(fileManager_));
    fileManager_.downloads = {"/home/someone/Downloads", "/gone"};
    EXPECT_TRUE(ui::isDownloadsReadable(fileManager_));
}

}  // namespace
