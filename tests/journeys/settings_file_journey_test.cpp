// What becomes of the open settings window when its file is odd, broken or gone.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

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

}  // namespace
}  // namespace journeys
