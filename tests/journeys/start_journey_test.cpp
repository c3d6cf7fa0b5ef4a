// The start of the program: its first log, what it stores, and what it does when something is
// wrong.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <fstream>

#include "journeys/session.h"

namespace journeys {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* screenshotRegistered =
    "✅ Screenshot shortcut registered successfully (keyCode: 18)";
constexpr const char* recognitionRegistered =
    "✅ OCR shortcut registered successfully (keyCode: 19)";

std::vector<std::string> firstStartLog() {
    std::vector<std::string> lines{"🔧 Migrating shortcuts: forcing both to enabled",
                                   "🔧 Migrating screenshot shortcut: forcing to Cmd+Shift+1",
                                   screenshotRegistered, line::handlerInstalled};
    // The other switch and the migrated key, then once later and once after the activation.
    for (int run = 0; run < 4; ++run) {
        lines.insert(lines.end(),
                     {screenshotRegistered, recognitionRegistered, line::handlerInstalled});
    }
    return lines;
}

TEST(FirstStart, the_log_is_the_migrations_and_every_registration) {
    Session session;
    session.start(SettingsWindow::leftOpen);
    auto lines = session.linesSince(0);
    const auto activation = std::find(lines.begin(), lines.end(), line::becameActive);
    ASSERT_NE(activation, lines.end());
    // The window manager decides when the first activation comes, so only its place is free, and
    // never inside a registration.
    EXPECT_THAT(*(activation - 1), line::handlerInstalled);
    lines.erase(activation);
    EXPECT_THAT(lines, ElementsAreArray(firstStartLog()));
    EXPECT_THAT(session.program().errorLines(), IsEmpty());
}

TEST(FirstStart, the_switches_the_key_and_the_migration_flags_are_stored_and_nothing_else) {
    Session session;
    session.start(SettingsWindow::leftOpen);
    EXPECT_EQ(session.readSettings(), (nlohmann::json{{"useShortcutForScreenshot", true},
                                                      {"useCmdShift2", true},
                                                      {"screenshotKeyCode", 18},
                                                      {"shortcutsEnabledMigration_v1", true},
                                                      {"shortcutsDefaultKeyMigration_v2", true}}));
    struct stat status {};
    ASSERT_EQ(::stat(session.settingsFile().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST(FirstStart, the_settings_window_opens_with_its_identifier_as_role) {
    Session session;
    session.start(SettingsWindow::leftOpen);
    const auto window = session.windowWithRole("main");
    ASSERT_TRUE(window.has_value());
    EXPECT_TRUE(desktop::waitUntil([&] { return session.activeWindow() == *window; }));
}

/// Whether the program has a font file open.
bool hasFonts(pid_t program) {
    std::ifstream maps("/proc/" + std::to_string(program) + "/maps");
    for (std::string line; std::getline(maps, line);) {
        if (line.ends_with(".ttf") || line.ends_with(".otf")) {
            return true;
        }
    }
    return false;
}

TEST(FirstStart, the_settings_window_takes_its_fonts_along_when_it_is_closed) {
    Session session;
    session.start(SettingsWindow::leftOpen);
    const pid_t program = session.program().pid();
    EXPECT_TRUE(desktop::waitUntil([&] { return hasFonts(program); }));
    session.closeWindow(*session.windowWithRole("main"));
    EXPECT_TRUE(desktop::waitUntil([&] { return !hasFonts(program); }));
}

TEST(LaterStart, a_migrated_store_is_not_migrated_again) {
    Session session;
    session.writeSettings({{"screenshotKeyCode", 20}, {"screenshotModifiers", 4096 + 256}});
    session.start();
    EXPECT_EQ(session.countSince(0, "🔧"), 0U);
    // The key of that code is the "3" of the main row, with Control and Super.
    const std::size_t before = session.mark();
    session.input().chord(
        {desktop::key::leftControl, desktop::key::leftSuper, desktop::key::digit3});
    session.program().waitForLine(line::showSelectionCalled, before);
    session.waitUntilOpen();
}

TEST(LaterStart, the_program_stays_when_its_last_window_is_closed) {
    Session session;
    session.start(SettingsWindow::closed);
    EXPECT_TRUE(session.program().isRunning());
    session.openOverlay();
}

TEST(StartWithoutDisplay, one_sentence_and_exit_status_1) {
    Session session;
    session.startWithoutWaiting({{"DISPLAY", ""}});
    EXPECT_EQ(session.program().waitForExit(), 1);
    EXPECT_EQ(session.program().errorLines().size(), 1U)
        << testing::PrintToString(session.program().errorLines());
    EXPECT_THAT(session.program().outputLines(), IsEmpty());
}

TEST(StartWithoutDisplay, a_display_that_does_not_answer_is_the_same) {
    Session session;
    session.startWithoutWaiting({{"DISPLAY", ":54321"}});
    EXPECT_EQ(session.program().waitForExit(), 1);
    EXPECT_EQ(session.program().errorLines().size(), 1U)
        << testing::PrintToString(session.program().errorLines());
}

TEST(BrokenSettings, the_file_is_set_aside_and_said_and_defaults_hold) {
    Session session;
    session.writeSettings({});
    const std::string broken = R"({"saveToDownloads": fal)";
    std::ofstream(session.settingsFile()) << broken;
    session.start();
    std::vector<std::filesystem::path> setAside;
    for (const auto& entry :
         std::filesystem::directory_iterator(session.settingsFile().parent_path())) {
        if (entry.path().filename().string().starts_with("settings.json.corrupt-")) {
            setAside.push_back(entry.path());
        }
    }
    ASSERT_EQ(setAside.size(), 1U);
    const auto bytes = desktop::readFile(setAside.front());
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()), broken);
    const auto lines = session.linesSince(0);
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                            [](const std::string& text) {
                                return text.find("settings.json.corrupt-") != std::string::npos;
                            }),
              1);
    EXPECT_EQ(session.readSettings().value("screenshotKeyCode", 0), 18);
}

TEST(SecondStart, it_brings_the_settings_window_of_the_first_to_the_front_and_exits_0) {
    Session session;
    session.start(SettingsWindow::leftOpen);
    const auto window = session.windowWithRole("main");
    ASSERT_TRUE(window.has_value());
    desktop::TestWindow other(session.desktop().displayName(), {.x = 50, .y = 60});
    ASSERT_TRUE(desktop::waitUntil([&] { return session.activeWindow() == other.id(); }));
    const std::size_t before = session.mark();
    auto second = session.startSecond();
    EXPECT_EQ(second->waitForExit(), 0);
    EXPECT_TRUE(desktop::waitUntil([&] { return session.activeWindow() == *window; }));
    EXPECT_TRUE(session.program().isRunning());
    EXPECT_EQ(session.countSince(before, "✅"), 0U);
    EXPECT_THAT(second->outputLines(), IsEmpty());
    EXPECT_THAT(second->errorLines(), IsEmpty());
}

TEST(SecondStart, a_closed_settings_window_is_opened_again) {
    Session session;
    session.start(SettingsWindow::closed);
    auto second = session.startSecond();
    EXPECT_EQ(second->waitForExit(), 0);
    EXPECT_TRUE(desktop::waitUntil([&] {
        const auto window = session.windowWithRole("main");
        return window && session.activeWindow() == *window;
    }));
}

}  // namespace
}  // namespace journeys
