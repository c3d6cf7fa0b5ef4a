// The login item: what a session's own autostart runner makes of it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "journeys/session.h"
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
    std::ofstream(entry()) << std::string("[Desktop Entry\0\xFF\nExec=\"\nType=\n", 32);
    auto items = service(LUMAFRAME_PROGRAM);
    EXPECT_EQ(items.status(), ui::LoginItemStatus::notRegistered);
    ASSERT_TRUE(items.registerItem());
    auto runner = logIn();
    quit();
}

}  // namespace
}  // namespace journeys
