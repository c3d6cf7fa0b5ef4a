// What becomes of the open settings window when its file is odd, broken or gone.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <linux/capability.h>
#include <sys/prctl.h>

#include <algorithm>
#include <fstream>

#include "journeys/settings_fixture.h"

namespace journeys {
namespace {

using testing::IsEmpty;

class SettingsFile : public SettingsFixture {};

TEST_F(SettingsFile, values_of_the_wrong_type_or_out_of_range_show_the_defaults_and_stay_stored) {
    const nlohmann::json odd{{"saveToDownloads", "yes"}, {"copyToClipboard", 0},
                             {"playSounds", nullptr},    {"captureShadows", 1e300},
                             {"screenshotSavePath", 17}, {"ocrSavePath", {1, 2}}};
    open(odd);
    EXPECT_TRUE(panel.isChecked("Save to", 0));
    EXPECT_TRUE(panel.isChecked("Copy to clipboard", 0));
    EXPECT_TRUE(panel.isChecked("Play sounds"));
    EXPECT_TRUE(panel.isChecked("Capture window shadows by Spacebar"));
    EXPECT_NO_THROW(static_cast<void>(panel.object("push button", "Downloads", 1)));
    panel.toggle("Show notifications");
    for (const auto& [name, value] : odd.items()) {
        EXPECT_EQ(stored(name), value) << name;
    }
}

TEST_F(SettingsFile, a_deleted_file_shows_the_defaults_and_the_next_change_makes_a_new_one) {
    open({{"playSounds", false}});
    const std::size_t before = session.mark();
    std::filesystem::remove(session.settingsFile());
    session.require("The default", [this] { return panel.isChecked("Play sounds"); });
    panel.toggle("Show notifications");
    EXPECT_EQ(session.readSettings(), (nlohmann::json{{"showNotifications", true}}));
    EXPECT_THAT(session.linesSince(before), IsEmpty());
}

TEST_F(SettingsFile, a_truncated_file_is_set_aside_with_one_line_and_defaults_show) {
    open({{"playSounds", false}});
    const std::size_t before = session.mark();
    const std::string cut = R"({"playSounds": fal)";
    replaceSettings(cut);
    session.require("The default", [this] { return panel.isChecked("Play sounds"); });
    ASSERT_EQ(setAside().size(), 1U);
    const auto kept = desktop::readFile(session.settingsFile().parent_path() / setAside().front());
    EXPECT_EQ(std::string(kept.begin(), kept.end()), cut);
    EXPECT_EQ(session.linesSince(before).size(), 1U);
    panel.toggle("Play sounds");
    EXPECT_EQ(stored("playSounds"), false);
    EXPECT_EQ(session.linesSince(before).size(), 1U);
}

TEST_F(SettingsFile, a_file_replaced_by_a_directory_loses_nothing_that_is_set_afterwards) {
    open({{"playSounds", false}});
    const std::size_t before = session.mark();
    std::filesystem::remove(session.settingsFile());
    std::filesystem::create_directory(session.settingsFile());
    session.require("The default", [this] { return panel.isChecked("Play sounds"); });
    panel.toggle("Play sounds");
    panel.toggle("Show notifications");
    EXPECT_EQ(session.linesSince(before).size(), 1U)
        << testing::PrintToString(session.linesSince(before));
    std::filesystem::remove(session.settingsFile());
    panel.toggle("Hide dock icon");
    EXPECT_EQ(session.readSettings(),
              (nlohmann::json{
                  {"playSounds", false}, {"showNotifications", true}, {"hideDockIcon", true}}));
}

TEST_F(SettingsFile, ten_thousand_toggles_in_a_row_lose_nothing) {
    open();
    panel.toggle("Play sounds");
    for (int count = 0; count < 10000; ++count) {
        session.input().tap(desktop::key::space);
        // Without another key in between the toolkit takes fast presses for one that is held.
        session.input().tap(desktop::key::leftShift);
    }
    session.input().click(panel.object("check box", "Show notifications").center());
    // Each one is a file written and renamed.
    desktop::require(
        "The change after them", [this] { return stored("showNotifications") == true; },
        std::chrono::seconds(90));
    EXPECT_EQ(stored("playSounds"), false);
    EXPECT_FALSE(panel.isChecked("Play sounds"));
}

/// The same with a program to which the permissions of files apply, whoever runs the test.
class UnreadableSettingsFile : public SettingsFile {
  protected:
    void startUnprivileged() {
        session.start(SettingsWindow::leftOpen, {}, [] {
            // Refused to an ordinary user, who has nothing to give up.
            ::prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE, 0, 0, 0);
            ::prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH, 0, 0, 0);
        });
        panel.waitUntilOpen();
    }
    void setAccess(std::filesystem::perms access) const {
        std::filesystem::permissions(session.settingsFile(), access);
    }
    static constexpr auto nobody = std::filesystem::perms::none;
    static constexpr auto owner =
        std::filesystem::perms::owner_read | std::filesystem::perms::owner_write;
};

TEST_F(UnreadableSettingsFile, while_the_window_is_open_it_loses_nothing_and_is_mended) {
    session.writeSettings({{"playSounds", false}});
    startUnprivileged();
    const std::size_t before = session.mark();
    setAccess(nobody);
    panel.toggle("Show notifications");
    EXPECT_FALSE(panel.isChecked("Play sounds"));
    EXPECT_EQ(stored("playSounds"), false);
    EXPECT_EQ(stored("showNotifications"), true);
    EXPECT_EQ(std::filesystem::status(session.settingsFile()).permissions(), owner);
    EXPECT_THAT(session.linesSince(before), IsEmpty());
}

TEST_F(UnreadableSettingsFile, at_the_start_is_one_line_and_counts_as_soon_as_it_can_be_read) {
    session.writeSettings({{"playSounds", false}, {"unknown", "kept"}});
    const auto before = session.readSettings();
    const auto written = std::filesystem::last_write_time(session.settingsFile());
    setAccess(nobody);
    startUnprivileged();
    EXPECT_TRUE(panel.isChecked("Play sounds"));
    panel.toggle("Show notifications");
    // An ordinary user's test cannot read it either.
    EXPECT_EQ(std::filesystem::last_write_time(session.settingsFile()), written);
    const auto lines = session.linesSince(0);
    EXPECT_EQ(std::ranges::count_if(lines,
                                    [](const std::string& line) {
                                        return line.find("settings.json") != std::string::npos;
                                    }),
              1)
        << testing::PrintToString(lines);
    setAccess(owner);
    session.require("The stored value", [this] { return !panel.isChecked("Play sounds"); });
    EXPECT_TRUE(panel.isChecked("Show notifications"));
    panel.toggle("Hide dock icon");
    auto expected = before;
    expected["showNotifications"] = true;
    expected["hideDockIcon"] = true;
    const auto after = session.readSettings();
    for (const auto& [name, value] : expected.items()) {
        EXPECT_EQ(after.value(name, nlohmann::json()), value) << name;
    }
}

}  // namespace
}  // namespace journeys
