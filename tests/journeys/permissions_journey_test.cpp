#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <fstream>

#include "journeys/permissions_panel.h"
#include "journeys/session.h"

namespace journeys {
namespace {

namespace fs = std::filesystem;
namespace key = desktop::key;
using testing::ElementsAre;

/// A session whose permissions window opens, or not, at the start of the program.
class Permissions : public testing::Test {
  protected:
    /// The program that opens pages on the desktop notes how it was called.
    Permissions() {
        fs::create_directories(session.desktop().home() / "bin");
        session.leftOnDisk().expect(downloads());
        install("xdg-open", "echo \"$@\" >>" + openedFile().string());
        session.writeSettings(nlohmann::json::object());
    }
    /// A program of the desktop, before any other of its name.
    void install(const std::string& name, const std::string& script) {
        const fs::path program = session.desktop().home() / "bin" / name;
        std::ofstream(program) << "#!/bin/sh\n" << script << "\n";
        fs::permissions(program, fs::perms::owner_all);
    }
    [[nodiscard]] fs::path openedFile() { return session.desktop().directory() / "opened"; }
    [[nodiscard]] fs::path downloads() { return session.desktop().home() / "Downloads"; }
    void start(desktop::Environment environment = {}, std::function<void()> beforeExec = {}) {
        environment["PATH"] = (session.desktop().home() / "bin").string() + ":/usr/bin:/bin";
        session.startWithoutWaiting(environment, std::move(beforeExec));
    }
    void expectGranted(const std::string& permission) {
        EXPECT_THAT(panel.status(permission), ElementsAre("Granted")) << permission;
    }
    void expectRefused(const std::string& permission) {
        EXPECT_THAT(panel.status(permission), ElementsAre("Not Granted", "Open Settings"))
            << permission;
    }
    bool isFloating() {
        const auto window = session.windowWithRole("permissions");
        const auto bytes = session.desktop().client().property(window.value_or(0), "_NET_WM_STATE");
        const xcb_atom_t above = session.desktop().client().atom("_NET_WM_STATE_ABOVE");
        for (std::size_t at = 0; bytes && at + 4 <= bytes->size(); at += 4) {
            if (std::memcmp(bytes->data() + at, &above, 4) == 0) {
                return true;
            }
        }
        return false;
    }
    /// Rests the pointer on a row until its help is shown; it has to end like this.
    void waitForHelp(const std::string& permission, const std::string& end) {
        const auto all = panel.objects();
        // The help of another row may lie over this one.
        session.input().moveTo(all.front().center());
        session.require("No help", [this] { return shownHelp().empty(); });
        const auto label = std::ranges::find(all, permission, &desktop::Accessible::name);
        if (label == all.end()) {
            throw std::runtime_error("There is no row " + permission + ".");
        }
        const desktop::Place place = label->center();
        session.input().moveTo(place);
        session.input().moveTo({place.x + 2, place.y});
        session.require("The help of " + permission, [&] { return shownHelp().ends_with(end); });
    }
    /// The hover help of the moment, empty without one.
    std::string shownHelp() {
        for (const desktop::Accessible& object : session.desktop().accessibles()) {
            if (object.isShowing() && object.name.starts_with("Lumaframe ") &&
                object.name.ends_with(".")) {
                return object.name;
            }
        }
        return {};
    }
    /// What "Open Settings" has opened.
    std::string openedPage() {
        std::string page;
        // The file is there before what is written into it.
        session.require("An opened page", [&] {
            std::ifstream opened(openedFile());
            return static_cast<bool>(std::getline(opened, page)) && !opened.eof();
        });
        return page;
    }
    void expectHelpPage() {
        const std::string page = openedPage();
        EXPECT_THAT(page, testing::EndsWith("/help/permissions.html"));
        EXPECT_TRUE(fs::exists(page)) << page;
    }
    /// As another program.
    void holdEveryKey() {
        // One by one: those that the window manager holds cannot be had.
        auto& other = session.desktop().client();
        for (unsigned code = 8; code <= 255; ++code) {
            xcb_grab_key(other.get(), 0, other.root(), XCB_MOD_MASK_ANY,
                         static_cast<xcb_keycode_t>(code), XCB_GRAB_MODE_ASYNC,
                         XCB_GRAB_MODE_ASYNC);
        }
        other.synchronize();
    }
    void letKeysGo() {
        auto& other = session.desktop().client();
        xcb_ungrab_key(other.get(), XCB_GRAB_ANY, other.root(), XCB_MOD_MASK_ANY);
        other.synchronize();
    }
    void keepPicture(const std::string& name) {
        desktop::writePng(Session::pictureFile(name),
                          desktop::readScreen(session.desktop().client()));
    }

    Session session{{.accessibility = desktop::Accessibility::on}};
    PermissionsPanel panel{session};
};

TEST_F(Permissions, a_missing_downloads_folder_is_made_and_the_first_run_completed) {
    fs::remove(downloads());
    start();
    panel.waitUntilOpen();
    EXPECT_TRUE(session.windowWithRole("main"));
    expectGranted("Screen Recording");
    expectGranted("Accessibility");
    expectRefused("Files and Folders");
    EXPECT_EQ(panel.action().name, "Refresh Status");
    EXPECT_TRUE(isFloating());
    keepPicture("permissions-missing-downloads");

    // The person goes to another program, makes the folder and comes back.
    desktop::TestWindow other(session.desktop().displayName(),
                              {.x = 20, .y = 500, .width = 200, .height = 150});
    other.focus();
    session.require("Another program in front",
                    [&] { return session.activeWindow() == other.id(); });
    fs::create_directory(downloads());
    expectRefused("Files and Folders");
    const auto title = panel.objects().front();
    session.input().click(title.center());
    panel.waitForStatus("Files and Folders", "Granted");
    panel.waitForAction("Get Started");
    EXPECT_FALSE(session.readSettings().contains("hasCompletedFirstRun"));

    session.input().click(panel.action().center());
    session.require("The closing of the permissions window",
                    [this] { return !session.windowWithRole("permissions"); });
    EXPECT_EQ(session.readSettings().at("hasCompletedFirstRun"), true);
    EXPECT_TRUE(session.windowWithRole("main"));
    EXPECT_TRUE(session.program().isRunning());
}

TEST_F(Permissions, a_downloads_folder_that_cannot_be_read_is_not_granted) {
    fs::permissions(downloads(), fs::perms::none);
    // The super-user, too, is refused what its lost capabilities would allow.
    start({}, [] {
        ::prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE);
        ::prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH);
    });
    panel.waitUntilOpen();
    expectGranted("Screen Recording");
    expectRefused("Files and Folders");
    fs::permissions(downloads(), fs::perms::owner_all);
    session.input().click(panel.action().center());
    panel.waitForStatus("Files and Folders", "Granted");
    panel.waitForAction("Get Started");
}

TEST_F(Permissions, while_another_program_holds_every_key_accessibility_is_not_granted) {
    holdEveryKey();
    start();
    panel.waitUntilOpen();
    expectGranted("Screen Recording");
    expectRefused("Accessibility");
    expectGranted("Files and Folders");
    letKeysGo();

    // By the keyboard alone.
    const auto focusedName = [this] {
        for (const auto& object : panel.objects()) {
            if (object.isFocused()) {
                return object.name;
            }
        }
        return std::string();
    };
    for (int presses = 0; presses < 4 && focusedName() != "Refresh Status"; ++presses) {
        const std::string before = focusedName();
        session.input().tap(key::tab);
        session.require("The next control", [&] { return focusedName() != before; });
    }
    session.input().tap(key::space);
    panel.waitForStatus("Accessibility", "Granted");
    session.require("The new button", [this] { return panel.action().name == "Get Started"; });
    // The same button, so the focus is where it was.
    EXPECT_EQ(focusedName(), "Get Started");
    session.input().tap(key::returnKey);
    session.require("The closing of the permissions window",
                    [this] { return !session.windowWithRole("permissions"); });
    EXPECT_EQ(session.readSettings().at("hasCompletedFirstRun"), true);
}

TEST_F(Permissions, that_another_program_holds_every_key_is_said_by_the_row_and_by_the_help) {
    holdEveryKey();
    // On a desktop whose own page would change nothing.
    start({{"XDG_CURRENT_DESKTOP", "XFCE"}});
    panel.waitUntilOpen();
    expectRefused("Accessibility");
    waitForHelp("Accessibility", "Another program holds every key: end its hold on the keyboard.");
    keepPicture("permissions-held-keys");
    waitForHelp("Screen Recording", "Lumaframe reads the screen to take pictures of it.");
    session.input().click(panel.settingsButton("Accessibility").center());
    expectHelpPage();
}

TEST_F(Permissions, an_untrusted_program_has_neither_screen_nor_keys_and_opens_the_help) {
    start({{"XAUTHORITY", session.desktop().makeUntrustedAuthority()}});
    panel.waitUntilOpen();
    expectRefused("Screen Recording");
    expectRefused("Accessibility");
    expectGranted("Files and Folders");
    EXPECT_EQ(panel.action().name, "Refresh Status");
    waitForHelp("Screen Recording", "untrusted program, as after ssh -X: use ssh -Y.");
    keepPicture("permissions-untrusted");
    waitForHelp("Accessibility", "untrusted program, as after ssh -X: use ssh -Y.");
    waitForHelp("Files and Folders", "Lumaframe saves into your Downloads folder.");
    session.input().click(panel.settingsButton("Screen Recording").center());
    expectHelpPage();
}

TEST_F(Permissions, a_file_in_the_place_of_the_downloads_folder_is_not_granted) {
    fs::remove(downloads());
    std::ofstream(downloads()) << "no folder";
    start();
    panel.waitUntilOpen();
    expectRefused("Files and Folders");
}

TEST_F(Permissions, on_plasma_the_page_of_the_folders_opens_where_that_is_what_is_missing) {
    fs::remove(downloads());
    install("systemsettings", "echo systemsettings \"$@\" >>" + openedFile().string());
    start({{"XDG_CURRENT_DESKTOP", "KDE"}});
    panel.waitUntilOpen();
    session.input().click(panel.settingsButton("Files and Folders").center());
    EXPECT_EQ(openedPage(), "systemsettings kcm_desktoppaths");
}

TEST_F(Permissions, the_icon_is_dragged_out_of_the_window_as_the_url_of_the_program) {
    fs::remove(downloads());
    start();
    panel.waitUntilOpen();
    const auto target = session.desktop().startOther("drop-target", {LUMAFRAME_TEST_DROP_TARGET});
    target->waitForLine("ready");
    session.waitUntilStill();
    const desktop::Place icon = panel.icon().center();
    session.input().moveTo(icon);
    session.input().pressButton();
    session.input().moveInSteps(icon, {120, 140}, 20);
    target->waitForLine("entered");
    session.input().releaseButton();
    const auto index = target->waitForLine("dropped");
    EXPECT_EQ(target->outputLines().at(index), std::string("dropped file://") + LUMAFRAME_PROGRAM);

    // The window goes on.
    fs::create_directory(downloads());
    session.input().click(panel.action().center());
    panel.waitForStatus("Files and Folders", "Granted");
}

TEST_F(Permissions, without_a_browser_the_help_opens_in_a_window_of_the_programs_own) {
    for (const char* name : {"xdg-open", "gio"}) {
        install(name, "exit 3");
    }
    fs::remove(downloads());
    start();
    panel.waitUntilOpen();
    session.input().click(panel.settingsButton("Files and Folders").center());
    session.require("The help window in front", [this] {
        const auto window = session.windowWithRole("help");
        return window && session.activeWindow() == *window;
    });
    session.waitUntilStill();
    keepPicture("permissions-help-window");
    const auto all = session.desktop().accessibles();
    EXPECT_TRUE(std::ranges::any_of(all, [](const desktop::Accessible& object) {
        return object.name.starts_with("Lumaframe Help") && object.isShowing();
    }));
    // Like any window: it closes, and nothing else does.
    session.closeWindow(*session.windowWithRole("help"));
    session.require("The closing of the help window",
                    [this] { return !session.windowWithRole("help"); });
    EXPECT_TRUE(session.windowWithRole("permissions"));
}

TEST_F(Permissions, a_name_of_a_wayland_display_that_was_left_over_takes_nothing_away) {
    fs::remove(downloads());
    // As a user manager keeps it from an earlier session, and hands it to whatever it starts.
    start({{"WAYLAND_DISPLAY", "wayland-0"}});
    panel.waitUntilOpen();
    expectGranted("Screen Recording");
    expectGranted("Accessibility");
    expectRefused("Files and Folders");
    waitForHelp("Screen Recording", "Lumaframe reads the screen to take pictures of it.");
    keepPicture("permissions-help");
}

TEST_F(Permissions, with_nothing_missing_only_the_settings_window_opens) {
    session.start(SettingsWindow::leftOpen);
    EXPECT_TRUE(desktop::staysTrue([this] { return !session.windowWithRole("permissions"); },
                                   std::chrono::milliseconds(200)));
    // Its own command opens it all the same.
    session.input().chord({key::leftControl, key::comma});
    panel.waitUntilOpen();
    EXPECT_EQ(panel.action().name, "Get Started");
}

}  // namespace
}  // namespace journeys
