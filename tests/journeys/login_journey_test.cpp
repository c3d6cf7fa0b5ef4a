// The login item: what a session's own autostart runner makes of it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "journeys/session.h"
#include "journeys/settings_fixture.h"
#include "platform/freedesktop/xdg_login_item_service.h"

namespace journeys {
namespace {

class Login : public testing::Test {
  protected:
    Login() {
        session.writeSettings(nlohmann::json::object());
        directories.configHome = session.desktop().home() / ".config";
    }
    platform::freedesktop::XdgLoginItemService service(const std::string& program) const {
        return {directories,
                {.currentDesktops = {"TEST"}, .runningProgram = [program] { return program; }}};
    }
    [[nodiscard]] std::filesystem::path entry() const {
        return session.desktop().home() / ".config/autostart/app.lumaframe.Lumaframe.desktop";
    }
    /// Begins a session as a desktop does: by its autostart runner. What it starts goes on
    /// afterwards, and writes into the runner's output.
    std::unique_ptr<desktop::Process> logIn() {
        session.leftOnDisk().begin();
        return session.desktop().start("runner", {"dex", "--autostart", "--environment", "TEST"},
                                       {{"XDG_CONFIG_DIRS", "/nonexistent"}});
    }
    void quit() {
        session.require("The active settings window", [&] {
            const auto window = session.windowWithRole("main");
            return window && session.activeWindow() == *window;
        });
        session.input().chord({desktop::key::leftControl, desktop::key::q});
        session.require("The end of the window", [&] { return !session.windowWithRole("main"); });
    }
    void expectNothingStarts() {
        auto runner = logIn();
        EXPECT_EQ(runner->waitForExit(), 0);
        EXPECT_TRUE(desktop::staysTrue([&] { return !session.windowWithRole("main"); },
                                       std::chrono::milliseconds(500)));
    }

    mutable Session session;
    platform::freedesktop::XdgDirectories directories;
};

TEST_F(Login, a_registered_program_is_started_at_each_log_in_until_it_is_unregistered) {
    auto items = service(LUMAFRAME_PROGRAM);
    expectNothingStarts();
    ASSERT_TRUE(items.registerItem());
    for (int day = 0; day < 2; ++day) {
        auto runner = logIn();
        quit();
    }
    ASSERT_TRUE(items.unregisterItem());
    expectNothingStarts();
}

TEST_F(Login, an_entry_that_was_switched_off_in_the_desktop_s_settings_starts_nothing) {
    auto items = service(LUMAFRAME_PROGRAM);
    ASSERT_TRUE(items.registerItem());
    std::ofstream(entry(), std::ios::app) << "Hidden=true\n";
    EXPECT_EQ(items.status(), ui::LoginItemStatus::requiresApproval);
    expectNothingStarts();
    ASSERT_TRUE(items.registerItem());
    auto runner = logIn();
    quit();
}

TEST_F(Login, a_program_in_a_folder_of_an_odd_name_is_started) {
    const auto folder = session.desktop().home() / "it's (my) programs & größe; #1";
    std::filesystem::create_directories(folder);
    std::filesystem::create_symlink(LUMAFRAME_PROGRAM, folder / "lumaframe");
    auto items = service(folder / "lumaframe");
    ASSERT_TRUE(items.registerItem());
    EXPECT_EQ(items.status(), ui::LoginItemStatus::enabled);
    auto runner = logIn();
    quit();
}

TEST_F(Login, garbage_in_the_place_of_the_entry_disturbs_nobody_and_is_replaced) {
    std::filesystem::create_directories(entry().parent_path());
    using std::string_literals::operator""s;
    std::ofstream(entry()) << "[Desktop Entry\0\xFF\nExec=\"\nType=\n"s;
    auto items = service(LUMAFRAME_PROGRAM);
    EXPECT_EQ(items.status(), ui::LoginItemStatus::notRegistered);
    ASSERT_TRUE(items.registerItem());
    auto runner = logIn();
    quit();
}

/// The switch "Run at startup" in the real window.
class LoginSwitch : public SettingsFixture {
  protected:
    [[nodiscard]] std::filesystem::path entry() {
        return session.desktop().home() / ".config/autostart/app.lumaframe.Lumaframe.desktop";
    }
    /// Clicks the switch where the change fails; gives the lines that this printed.
    std::vector<std::string> click() {
        const std::size_t before = session.mark();
        session.input().click(panel.object("check box", "Run at startup").center());
        session.waitForLine("Failed to ", before);
        // What a second call would print would come with the next change.
        panel.toggle("Show notifications");
        return session.linesSince(before);
    }
};

TEST_F(LoginSwitch, switched_on_it_starts_the_program_at_the_next_log_in_and_is_still_on) {
    open();
    panel.toggle("Run at startup");
    session.input().chord({desktop::key::leftControl, desktop::key::q});
    EXPECT_EQ(session.program().waitForExit(), 0);
    session.require("The end of the window", [&] { return !session.windowWithRole("main"); });
    auto runner = session.desktop().start("runner", {"dex", "--autostart", "--environment", "TEST"},
                                          {{"XDG_CONFIG_DIRS", "/nonexistent"}});
    panel.waitUntilOpen();
    EXPECT_TRUE(panel.isChecked("Run at startup"));
}

TEST_F(LoginSwitch, an_entry_that_was_switched_off_elsewhere_reads_as_off_and_can_be_switched_on) {
    std::filesystem::create_directories(entry().parent_path());
    using std::string_literals::operator""s;
    std::ofstream(entry()) << "[Desktop Entry]\nType=Application\nName=L\nExec=" LUMAFRAME_PROGRAM
                              "\nX-GNOME-Autostart-enabled=false\n";
    open();
    EXPECT_FALSE(panel.isChecked("Run at startup"));
    panel.toggle("Run at startup");
    const auto bytes = desktop::readFile(entry());
    EXPECT_THAT(std::string(bytes.begin(), bytes.end()),
                testing::HasSubstr("X-GNOME-Autostart-enabled=true"));
}

TEST_F(LoginSwitch, a_registration_that_fails_is_one_line_and_the_switch_goes_back) {
    std::filesystem::create_directories(entry().parent_path().parent_path());
    std::ofstream(entry().parent_path()) << "no folder";
    open();
    EXPECT_THAT(click(), testing::ElementsAre(
                             "Failed to register login item: “autostart” is not a folder."));
    EXPECT_FALSE(panel.isChecked("Run at startup"));
}

TEST_F(LoginSwitch, a_removal_that_fails_is_one_line_and_the_switch_goes_back) {
    open();
    panel.toggle("Run at startup");
    std::filesystem::remove(entry());
    std::filesystem::create_directory(entry());
    EXPECT_THAT(click(),
                testing::ElementsAre("Failed to unregister login item: The file "
                                     "“app.lumaframe.Lumaframe.desktop” couldn’t be removed: Is a "
                                     "directory."));
    EXPECT_TRUE(panel.isChecked("Run at startup"));
}

}  // namespace
}  // namespace journeys
