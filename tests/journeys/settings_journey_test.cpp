// The settings window: what it shows and stores, and that what is set in it counts.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "journeys/settings_fixture.h"
#include "journeys/sound_server.h"

namespace journeys {
namespace {

namespace key = desktop::key;
using testing::ElementsAre;
using testing::IsEmpty;

class Settings : public SettingsFixture {};

TEST_F(Settings, an_assistive_program_reads_every_control_with_its_label_in_reading_order) {
    open();
    std::vector<std::string> read;
    for (const auto& object : panel.objects()) {
        read.push_back(object.role + ": " + object.name);
    }
    EXPECT_THAT(
        read,
        ElementsAre("graphic: Lumaframe", "label: Lumaframe",
                    "label: Advanced screenshot capture and instant text recognition.",
                    "label: Screenshots", "push button: ⌘⇧1", "check box: Save to",
                    "push button: Downloads", "check box: Copy to clipboard",
                    "label: Text Recognition", "push button: ⌘⇧2", "check box: Save to",
                    "push button: Downloads", "check box: Copy to clipboard",
                    "check box: Run at startup", "check box: Hide dock icon",
                    "check box: Show notifications",
                    "check box: Capture window shadows by Spacebar", "check box: Play sounds"));
    EXPECT_EQ(panel.object("check box", "Save to", 0).description, "Screenshots");
    EXPECT_EQ(panel.object("check box", "Save to", 1).description, "Text Recognition");
}

TEST_F(Settings, an_assistive_program_reads_that_a_recorder_waits_and_what_it_has_recorded) {
    open();
    const auto isRead = [this](const std::string& name) {
        const auto all = panel.objects();
        return std::ranges::any_of(
            all, [&](const auto& one) { return one.role == "push button" && one.name == name; });
    };
    EXPECT_EQ(panel.object("push button", "⌘⇧2").description, "Text Recognition, Super+Shift+2");
    session.input().click(panel.object("push button", "⌘⇧1").center());
    session.require("The invitation", [&] { return isRead("Press Shortcut…"); });
    session.input().tap(key::a);
    session.require("The recorded key", [&] { return isRead("A"); });
    EXPECT_EQ(panel.object("push button", "A").description, "Screenshots");
    EXPECT_EQ(panel.object("push button", "Reset to default").description, "Screenshots");
    session.input().click(panel.object("push button", "Reset to default").center());
    session.require("The default", [&] { return isRead("⌘⇧1") && !isRead("Reset to default"); });
    EXPECT_EQ(panel.object("push button", "⌘⇧1").description, "Screenshots, Super+Shift+1");
}

TEST_F(Settings, a_shortcut_in_the_file_counts_at_the_next_start_and_not_before) {
    open();
    auto settings = session.readSettings();
    settings["screenshotKeyCode"] = 0;
    settings["playSounds"] = false;
    replaceSettings(settings.dump());
    session.require("The new value beside it", [this] { return !panel.isChecked("Play sounds"); });
    EXPECT_NO_THROW(static_cast<void>(panel.object("push button", "⌘⇧1")));
    session.openOverlay();
    session.cancelOverlay();
    session.program().end();
    session.start(SettingsWindow::leftOpen);
    panel.waitUntilOpen();
    EXPECT_NO_THROW(static_cast<void>(panel.object("push button", "⌘⇧A")));
}

TEST_F(Settings, tab_reaches_every_control_in_reading_order_and_space_toggles_it) {
    open();
    std::vector<desktop::Accessible> expected;
    for (const auto& object : panel.objects()) {
        if (object.isFocusable() && object.role != "label" && object.role != "graphic") {
            expected.push_back(object);
        }
    }
    ASSERT_EQ(expected.size(), 13U);
    const auto focused = [this]() -> desktop::Accessible {
        for (const auto& object : panel.objects()) {
            if (object.isFocused()) {
                return object;
            }
        }
        return {};
    };
    for (std::size_t index = 0; index < expected.size(); ++index) {
        // The window gives the first control the focus by itself.
        if (index > 0) {
            session.input().tap(key::tab);
        }
        session.require("The focus on " + expected[index].name, [&] {
            const auto now = focused();
            return now.name == expected[index].name && now.x == expected[index].x &&
                   now.y == expected[index].y;
        });
    }
    const bool before = panel.isChecked("Play sounds");
    session.input().tap(key::space);
    session.require("The toggle", [&] { return panel.isChecked("Play sounds") != before; });
    EXPECT_EQ(stored("playSounds"), !before);
}

TEST_F(Settings, the_control_with_the_focus_is_marked_once_the_keyboard_is_used) {
    open();
    const auto box = panel.object("check box", "Save to");
    const auto around = [&] {
        return session.screen({box.x - 3, box.y - 3, box.height + 6, box.height + 6});
    };
    const Picture plain = around();
    session.input().tap(key::tab);
    session.require("The mark", [&] { return around() != plain; });
    session.input().tap(key::tab);
    session.require("The end of the mark", [&] { return around() == plain; });
}

TEST_F(Settings, each_switch_is_stored_the_moment_it_is_clicked) {
    open();
    struct Row {
        const char* label;
        std::size_t index;
        const char* name;
        bool isOnAtFirst;
    };
    for (const Row& row : {Row{"Save to", 0, "saveToDownloads", true},
                           {"Copy to clipboard", 0, "copyToClipboard", true},
                           {"Save to", 1, "saveOCRToDownloads", false},
                           {"Copy to clipboard", 1, "copyOCRToClipboard", true},
                           {"Hide dock icon", 0, "hideDockIcon", false},
                           {"Show notifications", 0, "showNotifications", false},
                           {"Capture window shadows by Spacebar", 0, "captureShadows", true},
                           {"Play sounds", 0, "playSounds", true}}) {
        EXPECT_EQ(panel.isChecked(row.label, row.index), row.isOnAtFirst) << row.name;
        EXPECT_EQ(stored(row.name), nlohmann::json()) << row.name;
        panel.toggle(row.label, row.index);
        EXPECT_EQ(stored(row.name), !row.isOnAtFirst) << row.name;
        panel.toggle(row.label, row.index);
        EXPECT_EQ(stored(row.name), row.isOnAtFirst) << row.name;
    }
}

TEST_F(Settings, a_change_by_another_program_shows_in_the_open_window) {
    open();
    auto settings = session.readSettings();
    settings["playSounds"] = false;
    settings["saveOCRToDownloads"] = true;
    settings["ocrSavePath"] = "/data/Words";
    settings["unknown"] = "kept";
    replaceSettings(settings.dump());
    session.require("The new values in the window", [this] {
        return !panel.isChecked("Play sounds") && panel.isChecked("Save to", 1) &&
               panel.object("push button", "Words").description == "Text Recognition";
    });
    panel.toggle("Play sounds");
    EXPECT_EQ(stored("playSounds"), true);
    EXPECT_EQ(stored("unknown"), "kept");
}

TEST_F(Settings, hide_dock_icon_takes_the_window_out_of_the_task_bar_at_once) {
    open();
    const auto isInTaskBar = [this] {
        auto& client = session.desktop().client();
        const auto skip = client.atom("_NET_WM_STATE_SKIP_TASKBAR");
        const auto states = client.property(*session.windowWithRole("main"), "_NET_WM_STATE");
        for (std::size_t at = 0; states && at + 4 <= states->size(); at += 4) {
            if (std::memcmp(states->data() + at, &skip, 4) == 0) {
                return false;
            }
        }
        return true;
    };
    EXPECT_TRUE(isInTaskBar());
    panel.toggle("Hide dock icon");
    session.require("The window's leaving the task bar", [&] { return !isInTaskBar(); });
    panel.toggle("Hide dock icon");
    session.require("The window's return", isInTaskBar);
}

TEST_F(Settings, run_at_startup_makes_and_removes_the_autostart_entry) {
    open();
    const auto entry =
        session.desktop().home() / ".config/autostart/app.lumaframe.Lumaframe.desktop";
    EXPECT_FALSE(panel.isChecked("Run at startup"));
    panel.toggle("Run at startup");
    EXPECT_TRUE(std::filesystem::exists(entry));
    panel.toggle("Run at startup");
    EXPECT_FALSE(std::filesystem::exists(entry));
    EXPECT_EQ(stored("runAtStartup"), nlohmann::json());
}

TEST_F(Settings, save_and_copy_switched_off_leave_no_file_and_no_clipboard) {
    open();
    panel.toggle("Save to", 0);
    panel.toggle("Copy to clipboard", 0);
    panel.toggle("Show notifications");
    capture();
    session.require("The notification",
                    [this] { return !session.desktop().notifications().empty(); });
    EXPECT_THAT(session.downloads(), IsEmpty());
    EXPECT_FALSE(session.clipboard().isOwned());
    panel.toggle("Copy to clipboard", 0);
    capture();
    session.require("The picture on the clipboard",
                    [this] { return session.clipboard().isOwned(); });
    EXPECT_THAT(session.downloads(), IsEmpty());
    panel.toggle("Save to", 0);
    session.waitForLine(line::saved, capture());
    EXPECT_EQ(session.downloads().size(), 1U);
}

TEST_F(Settings, notifications_are_shown_only_while_they_are_switched_on) {
    open();
    session.waitForLine(line::saved, capture());
    EXPECT_TRUE(desktop::staysTrue([&] { return session.desktop().notifications().empty(); },
                                   std::chrono::milliseconds(200)));
    panel.toggle("Show notifications");
    capture();
    session.require("The notification",
                    [this] { return session.desktop().notifications().size() == 1; });
}

TEST_F(Settings, sounds_are_played_only_while_they_are_switched_on) {
    const auto socket = session.desktop().directory() / "sound";
    SoundServer server(socket);
    open({{"playSounds", false}}, {{"PULSE_SERVER", "unix:" + socket.string()}});
    const auto hasPlayed = [&] { return server.visits() > 0; };
    session.waitForLine(line::saved, capture());
    EXPECT_TRUE(desktop::staysTrue([&] { return !hasPlayed(); }, std::chrono::milliseconds(200)));
    panel.toggle("Play sounds");
    capture();
    session.require("The sound", hasPlayed);
}

class SettingsOfWindows : public SettingsFixture {
  protected:
    SettingsOfWindows() : SettingsFixture(desktop::Compositor::picom) {}
    /// Takes the test window and gives the size of the saved picture.
    std::pair<int, int> captureWindow(const desktop::TestWindow& window) {
        session.openOverlay();
        const std::size_t before = session.mark();
        session.input().tap(key::space);
        session.program().waitForLine(line::toggled, before);
        const Area frame = window.frame();
        const Place middle{frame.x + frame.width / 2, frame.y + frame.height / 2};
        const Picture plain = session.screen({middle.x, middle.y, 1, 1});
        session.input().moveTo({middle.x - 5, middle.y});
        session.input().moveTo(middle);
        session.require("The highlight", [&] {
            return session.screen({middle.x, middle.y, 1, 1}) != plain;
        });
        session.input().pressButton();
        session.input().releaseButton();
        const auto bytes = desktop::readFile(session.waitForLine(line::saved, before));
        session.waitUntilClosed();
        const auto picture = desktop::decodePng(bytes).picture;
        return {picture.width, picture.height};
    }
};

TEST_F(SettingsOfWindows, capture_window_shadows_adds_the_shadow_and_takes_it_away) {
    open();
    desktop::TestWindow window(session.desktop().displayName(),
                               {.x = 900, .y = 400, .width = 200, .height = 150});
    window.focus();
    session.waitUntilStill();
    const auto withShadow = captureWindow(window);
    panel.toggle("Capture window shadows by Spacebar");
    window.focus();
    session.waitUntilStill();
    const auto without = captureWindow(window);
    EXPECT_EQ(without, std::pair(window.frame().width, window.frame().height));
    EXPECT_GT(withShadow.first, without.first);
    EXPECT_GT(withShadow.second, without.second);
}

TEST_F(Settings, a_folder_chosen_in_the_dialog_takes_the_next_picture) {
    open();
    const auto shots = session.desktop().home() / "shots-1";
    session.leftOnDisk().expect(shots);
    std::filesystem::create_directories(shots);
    panel.chooseFolder(0, shots);
    session.require("The chosen folder",
                    [&] { return stored("screenshotSavePath") == shots.string(); });
    EXPECT_EQ(panel.object("push button", "shots-1").description, "Screenshots");
    const std::string file = session.waitForLine(line::saved, capture());
    EXPECT_EQ(std::filesystem::path(file).parent_path(), shots);
    EXPECT_THAT(session.downloads(), IsEmpty());
    std::filesystem::remove_all(shots);
    session.waitForLine(line::notSaved, capture());
    EXPECT_EQ(panel.object("push button", "shots-1").description, "Screenshots");
    EXPECT_TRUE(session.program().isRunning());
}

TEST_F(Settings, a_folder_dialog_that_is_cancelled_changes_nothing) {
    open({{"ocrSavePath", "/data/Words"}});
    const auto before = session.readSettings();
    session.input().click(panel.object("push button", "Words").center());
    session.require("The folder dialog", [this] {
        const auto window = session.windowWithRole("main");
        return window && session.activeWindow() != *window;
    });
    session.waitUntilStill();
    session.input().tap(key::escape);
    session.require("The end of the dialog", [this] {
        return session.activeWindow() == session.windowWithRole("main").value_or(0);
    });
    EXPECT_EQ(session.readSettings(), before);
}

TEST_F(Settings, the_icon_is_dragged_away_as_the_url_of_the_program) {
    open();
    const auto target = session.desktop().startOther("drop-target", {LUMAFRAME_TEST_DROP_TARGET});
    target->waitForLine("ready");
    session.waitUntilStill();
    const auto icon = panel.object("graphic", "Lumaframe");
    session.input().moveTo(icon.center());
    session.input().pressButton();
    session.input().moveInSteps(icon.center(), {120, 140}, 20);
    target->waitForLine("entered");
    session.input().releaseButton();
    const auto index = target->waitForLine("dropped");
    EXPECT_EQ(target->outputLines().at(index), std::string("dropped file://") + LUMAFRAME_PROGRAM);
    panel.toggle("Play sounds");
}

TEST_F(Settings, the_window_can_be_closed_while_its_icon_is_dragged) {
    open();
    const auto icon = panel.object("graphic", "Lumaframe");
    session.input().moveTo(icon.center());
    session.input().pressButton();
    session.input().moveInSteps(icon.center(), {50, 700}, 10);
    session.closeWindow(*session.windowWithRole("main"));
    session.input().releaseButton();
    const std::size_t before = session.mark();
    session.openOverlay();
    session.input().tap(key::escape);
    session.program().waitForLine(line::cursorRestored, before);
    EXPECT_TRUE(session.program().isRunning());
}

TEST_F(Settings, without_a_downloads_folder_the_permissions_window_opens_in_front) {
    std::filesystem::remove_all(session.desktop().home() / "Downloads");
    session.writeSettings(nlohmann::json::object());
    session.start(SettingsWindow::leftOpen);
    session.require("The permissions window in front", [this] {
        const auto window = session.windowWithRole("permissions");
        return window && session.activeWindow() == *window && session.windowWithRole("main");
    });
}

TEST_F(Settings, with_everything_granted_only_the_settings_window_opens) {
    open();
    EXPECT_TRUE(desktop::staysTrue([this] { return !session.windowWithRole("permissions"); },
                                   std::chrono::milliseconds(200)));
}

}  // namespace
}  // namespace journeys
