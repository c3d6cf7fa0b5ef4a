#include "app/app_delegate.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/settings_keys.h"
#include "doubles/call_log.h"
#include "doubles/fake_file_manager.h"
#include "doubles/fake_permissions.h"
#include "doubles/fake_windows.h"
#include "doubles/memory_settings_backend.h"

namespace {

using app::ActivationPolicy;
using testing::ElementsAre;
using testing::IsEmpty;

class AppDelegateTest : public testing::Test {
  protected:
    AppDelegateTest() {
        permissions.recordInto(calls);
        fileManager.recordInto(calls);
        windows.recordInto(calls);
        backend.recordInto(calls);
    }
    void launch() { delegate.applicationDidFinishLaunching(); }

    doubles::CallLog calls;
    doubles::FakePermissions permissions;
    doubles::FakeFileManager fileManager;
    doubles::FakeWindows windows;
    doubles::MemorySettingsBackend backend;
    app::SettingsStore settings{backend};
    app::AppDelegate delegate{{.settings = settings,
                               .permissions = permissions,
                               .fileManager = fileManager,
                               .application = windows}};
};

TEST_F(AppDelegateTest, the_steps_of_a_launch_come_in_their_order) {
    launch();
    EXPECT_THAT(
        calls.calls(),
        ElementsAre("can capture screen", "is accessibility trusted", "downloads directories",
                    "is readable: /home/someone/Downloads", "activation policy: 0"));
}

TEST_F(AppDelegateTest, a_launch_registers_the_default_settings_and_stores_none) {
    EXPECT_FALSE(settings.boolForKey(app::keys::saveToDownloads));
    launch();
    EXPECT_TRUE(settings.boolForKey(app::keys::saveToDownloads));
    EXPECT_THAT(backend.writes, IsEmpty());
}

TEST_F(AppDelegateTest, what_is_not_allowed_changes_nothing_and_nobody_is_prompted) {
    permissions.screenIsAllowed = false;
    permissions.accessibilityIsTrusted = false;
    fileManager.unreadable.insert("/home/someone/Downloads");
    launch();
    EXPECT_EQ(windows.activationPolicy, ActivationPolicy::regular);
    EXPECT_THAT(permissions.openedPages, IsEmpty());
    EXPECT_EQ(calls.calls().size(), 5U);
}

TEST_F(AppDelegateTest, without_downloads_nothing_is_asked_for_its_readability) {
    fileManager.downloads.clear();
    launch();
    EXPECT_THAT(calls.calls(), ElementsAre("can capture screen", "is accessibility trusted",
                                           "downloads directories", "activation policy: 0"));
}

TEST_F(AppDelegateTest, of_several_downloads_folders_the_first_is_probed) {
    fileManager.downloads = {"/first", "/second"};
    launch();
    EXPECT_EQ(calls.count("is readable: /first"), 1);
    EXPECT_EQ(calls.count("is readable: /second"), 0);
}

TEST_F(AppDelegateTest, a_hidden_dock_icon_makes_the_program_an_accessory) {
    settings.setBool(app::keys::hideDockIcon, true);
    launch();
    EXPECT_EQ(windows.activationPolicy, ActivationPolicy::accessory);
    EXPECT_EQ(static_cast<int>(ActivationPolicy::accessory), 1);
    EXPECT_EQ(static_cast<int>(ActivationPolicy::regular), 0);
}

TEST_F(AppDelegateTest, a_dock_icon_that_is_not_hidden_makes_it_a_regular_program) {
    settings.setBool(app::keys::hideDockIcon, false);
    launch();
    EXPECT_EQ(windows.activationPolicy, ActivationPolicy::regular);
}

}  // namespace
