#include "platform/freedesktop/session_permissions.h"

#include <gmock/gmock.h>

#include <chrono>
#include <thread>

#include "doubles/polled_watch.h"
#include "platform/freedesktop/settings_pages.h"
#include "platform/freedesktop/temporary_directory.h"

namespace freedesktop_tests {
namespace {

using platform::freedesktop::ProgramStarter;
using platform::freedesktop::SessionPermissions;
using testing::IsEmpty;

const std::string pane = "x-apple.systempreferences:com.apple.preference.security?";
const std::string screenPage = pane + "Privacy_ScreenCapture";
const std::string keyboardPage = pane + "Privacy_Accessibility";
const std::string filesPage = pane + "Privacy_FilesAndFolders";

/// A session whose programs are the test's own: each notes how it was called.
class SessionPermissionsTest : public testing::Test {
  protected:
    void install(const std::string& name, int status = 0) {
        const std::string path = directory_.write(
            "bin/" + name, "#!/bin/sh\necho " + name + " \"$@\" >>" + directory_.path("calls") +
                               "\nexit " + std::to_string(status) + "\n");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    }
    SessionPermissions& permissions(std::vector<std::string> desktops) {
        permissions_.emplace(
            SessionPermissions::Probes{.canReadScreen = [this] { return canReadScreen_; },
                                       .canGrabKeys = [this] { return canGrabKeys_; },
                                       .isNested = [this] { return isNested_; }},
            SessionPermissions::Pages{
                .currentDesktops = std::move(desktops),
                .helpPage = "/help.html",
                .starter = starter_,
                .showHelpPage = [this](const std::string& path) { shown_.push_back(path); }});
        return *permissions_;
    }
    /// What opening a page has started, once something has.
    std::string opened(const std::vector<std::string>& desktops, const std::string& url) {
        permissions(desktops).openSettingsPage(url);
        const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (directory_.read("calls").empty() && shown_.empty() &&
               std::chrono::steady_clock::now() < limit) {
            watch_.dispatch();
            std::this_thread::yield();
        }
        const std::string calls = directory_.read("calls");
        std::filesystem::remove(directory_.path("calls"));
        return calls;
    }

    TemporaryDirectory directory_;
    ScopedVariable path_{"PATH", directory_.path("bin").c_str()};
    doubles::PolledWatch watch_;
    ProgramStarter starter_{watch_.watch()};
    std::optional<SessionPermissions> permissions_;
    std::vector<std::string> shown_;
    bool canReadScreen_ = true;
    bool canGrabKeys_ = true;
    bool isNested_ = false;
};

TEST_F(SessionPermissionsTest, what_the_session_lets_the_program_do_is_granted) {
    const auto& session = permissions({});
    EXPECT_TRUE(session.canCaptureScreen());
    EXPECT_TRUE(session.isAccessibilityTrusted());
    EXPECT_EQ(session.screenCaptureLimit(), "");
    EXPECT_EQ(session.accessibilityLimit(), "");
}

TEST_F(SessionPermissionsTest, keys_that_another_program_holds_keep_only_the_keys) {
    canGrabKeys_ = false;
    const auto& session = permissions({});
    EXPECT_TRUE(session.canCaptureScreen());
    EXPECT_FALSE(session.isAccessibilityTrusted());
    EXPECT_EQ(session.screenCaptureLimit(), "");
    EXPECT_EQ(session.accessibilityLimit(),
              "Another program holds every key: end its hold on the keyboard.");
}

TEST_F(SessionPermissionsTest, an_untrusted_program_learns_why) {
    canReadScreen_ = canGrabKeys_ = false;
    const auto& session = permissions({});
    EXPECT_FALSE(session.canCaptureScreen());
    EXPECT_FALSE(session.isAccessibilityTrusted());
    EXPECT_THAT(session.screenCaptureLimit(), testing::HasSubstr("untrusted"));
    EXPECT_EQ(session.accessibilityLimit(), session.screenCaptureLimit());
}

TEST_F(SessionPermissionsTest, a_server_inside_another_session_grants_neither) {
    isNested_ = true;
    const auto& session = permissions({});
    EXPECT_FALSE(session.canCaptureScreen());
    EXPECT_FALSE(session.isAccessibilityTrusted());
    EXPECT_THAT(session.screenCaptureLimit(), testing::HasSubstr("Wayland"));
    EXPECT_EQ(session.accessibilityLimit(), session.screenCaptureLimit());
}

TEST_F(SessionPermissionsTest, the_running_desktop_opens_the_page_that_matters) {
    for (const char* name : {"gnome-control-center", "systemsettings", "xfce4-keyboard-settings",
                             "xfce4-settings-manager", "xdg-open"}) {
        install(name);
    }
    EXPECT_EQ(opened({"ubuntu", "GNOME"}, screenPage), "gnome-control-center applications\n");
    EXPECT_EQ(opened({"ubuntu", "GNOME"}, keyboardPage), "gnome-control-center keyboard\n");
    EXPECT_EQ(opened({"GNOME"}, filesPage), "gnome-control-center applications\n");
    EXPECT_EQ(opened({"KDE"}, screenPage), "systemsettings kcm_app-permissions\n");
    EXPECT_EQ(opened({"KDE"}, keyboardPage), "systemsettings kcm_keys\n");
    EXPECT_EQ(opened({"KDE"}, filesPage), "systemsettings kcm_desktoppaths\n");
    EXPECT_EQ(opened({"XFCE"}, screenPage), "xfce4-settings-manager\n");
    EXPECT_EQ(opened({"XFCE"}, keyboardPage), "xfce4-keyboard-settings\n");
    EXPECT_EQ(opened({"XFCE"}, filesPage), "xfce4-settings-manager\n");
}

TEST_F(SessionPermissionsTest, plasma_5_gets_the_page_by_the_name_that_it_has_there) {
    install("systemsettings5");
    install("systemsettings");
    EXPECT_EQ(opened({"KDE"}, screenPage), "systemsettings5 kcm_flatpak\n");
    EXPECT_EQ(opened({"KDE"}, keyboardPage), "systemsettings kcm_keys\n");
}

TEST_F(SessionPermissionsTest, another_desktop_gets_the_help_page) {
    install("xdg-open");
    EXPECT_EQ(opened({"openbox"}, screenPage), "xdg-open /help.html\n");
    EXPECT_EQ(opened({}, filesPage), "xdg-open /help.html\n");
    // A desktop without its settings program, too.
    EXPECT_EQ(opened({"GNOME"}, keyboardPage), "xdg-open /help.html\n");
}

TEST_F(SessionPermissionsTest, where_no_setting_could_change_anything_the_help_page_opens) {
    install("gnome-control-center");
    install("xdg-open");
    isNested_ = true;
    EXPECT_EQ(opened({"GNOME"}, screenPage), "xdg-open /help.html\n");
    EXPECT_EQ(opened({"GNOME"}, keyboardPage), "xdg-open /help.html\n");
    EXPECT_EQ(opened({"GNOME"}, filesPage), "gnome-control-center applications\n");
    isNested_ = false;
    canGrabKeys_ = false;
    EXPECT_EQ(opened({"GNOME"}, keyboardPage), "xdg-open /help.html\n");
    EXPECT_EQ(opened({"GNOME"}, screenPage), "gnome-control-center applications\n");
}

TEST_F(SessionPermissionsTest, without_a_browser_the_program_shows_the_page_itself) {
    EXPECT_EQ(opened({}, screenPage), "");
    EXPECT_THAT(shown_, testing::ElementsAre("/help.html"));
}

TEST_F(SessionPermissionsTest, an_unknown_page_does_nothing) {
    install("xdg-open");
    for (const char* url : {"", "not a url", "x-apple.systempreferences:other",
                            "x-apple.systempreferences:com.apple.preference.security?Privacy"}) {
        permissions({"GNOME"}).openSettingsPage(url);
        EXPECT_EQ(platform::freedesktop::settingsPageOf(url),
                  platform::freedesktop::SettingsPage::unknown);
    }
    EXPECT_FALSE(watch_.dispatch());
    EXPECT_THAT(shown_, IsEmpty());
}

}  // namespace
}  // namespace freedesktop_tests
