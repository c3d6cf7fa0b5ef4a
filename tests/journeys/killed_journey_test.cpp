// The whole program is ended in the middle of its work, at fifty moments of each kind.
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <random>
#include <set>

#include "journeys/session.h"
#include "journeys/settings_panel.h"

namespace journeys {
namespace {

namespace fs = std::filesystem;

constexpr int moments = 50;

/// Every file below `folder`, by its path from there.
std::set<std::string> filesBelow(const fs::path& folder) {
    std::set<std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (!entry.is_directory()) {
            files.insert(fs::relative(entry.path(), folder).string());
        }
    }
    return files;
}

class Killed : public testing::Test {
  protected:
    explicit Killed(desktop::Accessibility accessibility = desktop::Accessibility::off)
        : session({.accessibility = accessibility}) {}

    void startForMoment() {
        session.startWithoutWaiting();
        session.program().waitForLine(line::handlerInstalled);
        session.require("The settings window", [&] {
            window = session.windowWithRole("main");
            return window && session.activeWindow() == *window;
        });
    }
    /// Between now and `longest` from now.
    void endSoon(int moment, std::chrono::microseconds longest) {
        const std::chrono::microseconds pause{
            std::uniform_int_distribution<std::int64_t>(0, longest.count())(random)};
        const auto end = std::chrono::steady_clock::now() + pause;
        while (std::chrono::steady_clock::now() < end) {
        }
        session.program().signal(moment % 2 == 0 ? SIGKILL : SIGTERM);
        ASSERT_TRUE(session.program().waitForExit().has_value());
    }

    Session session;
    std::optional<xcb_window_t> window;
    std::mt19937 random{1};
};

TEST_F(Killed, in_a_save_leaves_the_earlier_pictures_and_at_most_the_beginning_of_one) {
    session.writeSettings({{"playSounds", false}});
    const auto before = filesBelow(session.desktop().home());
    std::vector<std::uint8_t> whole;
    int cutShort = 0;
    for (int moment = 0; moment < moments; ++moment) {
        startForMoment();
        // Until the shortcuts are registered for the last time, a press may be lost.
        session.require("The overlay", [&] {
            if (!session.isOpen()) {
                session.pressScreenshotShortcut();
            }
            return desktop::waitUntil([&] { return session.isOpen(); },
                                      std::chrono::milliseconds(200));
        });
        const std::size_t mark = session.mark();
        // Beside the settings window, whose pixels are not always the same.
        session.input().drag({900, 3}, {1275, 793});
        session.waitForLine(moment == 0 ? line::saved : line::regionCopied, mark);
        endSoon(moment, std::chrono::milliseconds(8));
        for (const fs::path& file : session.downloads()) {
            const auto bytes = desktop::readFile(file);
            if (whole.empty()) {
                EXPECT_EQ(desktop::decodePng(bytes).picture.width, 375);
                whole = bytes;
            }
            // The same screen gives the same file.
            ASSERT_LE(bytes.size(), whole.size());
            ASSERT_TRUE(std::equal(bytes.begin(), bytes.end(), whole.begin())) << file;
            cutShort += bytes.size() < whole.size() ? 1 : 0;
            fs::remove(file);
        }
        ASSERT_EQ(filesBelow(session.desktop().home()), before) << "at moment " << moment;
    }
    RecordProperty("cut_short", cutShort);
}

class KilledInSettings : public Killed {
  protected:
    KilledInSettings() : Killed(desktop::Accessibility::on) {}
};

TEST_F(KilledInSettings, leaves_settings_that_are_the_old_or_the_new) {
    session.writeSettings(nlohmann::json::object());
    startForMoment();
    SettingsPanel panel(session);
    panel.waitUntilOpen();
    const Place box = panel.object("check box", "Play sounds").center();
    panel.toggle("Play sounds");
    session.program().end();
    auto old = session.readSettings();
    int changes = 0;
    for (int moment = 0; moment < moments; ++moment) {
        startForMoment();
        session.waitUntilStill();
        session.input().click(box);
        endSoon(moment, std::chrono::milliseconds(12));
        auto found = session.readSettings();
        ASSERT_FALSE(found.is_discarded()) << "at moment " << moment;
        changes += found != old ? 1 : 0;
        // Nothing but that one switch may have changed.
        auto expected = old;
        expected["playSounds"] = found["playSounds"];
        ASSERT_EQ(found, expected) << "at moment " << moment;
        EXPECT_TRUE(found["playSounds"].is_boolean());
        old = found;
    }
    // Some came too early.
    EXPECT_GT(changes, 5);
    EXPECT_LT(changes, moments);
    // Between naming what was written and putting it into its place a name may stay; on a busy
    // machine that was seen twice.
    std::size_t named = 0;
    for (const auto& file : fs::directory_iterator(session.settingsFile().parent_path())) {
        if (file.path() != session.settingsFile()) {
            EXPECT_TRUE(file.path().filename().string().starts_with(".lumaframe-")) << file;
            ++named;
        }
    }
    EXPECT_LE(named, 5U);
}

}  // namespace
}  // namespace journeys
