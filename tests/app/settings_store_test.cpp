#include "app/settings_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <vector>

#include "app/default_settings.h"
#include "app/settings_keys.h"
#include "doubles/memory_settings_backend.h"

namespace {

using app::SettingsValue;
namespace keys = app::keys;
using testing::ElementsAre;

class SettingsStoreTest : public testing::Test {
  protected:
    doubles::MemorySettingsBackend backend;
    app::SettingsStore settings{backend};
};

TEST_F(SettingsStoreTest, an_absent_bool_reads_false) {
    EXPECT_FALSE(settings.boolForKey("anything"));
}

TEST_F(SettingsStoreTest, an_absent_string_reads_as_nothing) {
    EXPECT_EQ(settings.stringForKey("anything"), std::nullopt);
}

TEST_F(SettingsStoreTest, an_empty_string_is_a_value) {
    settings.setString(keys::screenshotSavePath, "");
    EXPECT_EQ(settings.stringForKey(keys::screenshotSavePath), "");
}

TEST_F(SettingsStoreTest, a_raw_read_tells_absent_from_false_and_zero) {
    EXPECT_EQ(settings.objectForKey("flag"), std::nullopt);
    settings.setBool("flag", false);
    settings.setInteger("number", 0);
    EXPECT_EQ(settings.objectForKey("flag"), SettingsValue(false));
    EXPECT_EQ(settings.objectForKey("number"), SettingsValue(std::int64_t{0}));
}

TEST_F(SettingsStoreTest, what_is_written_is_read_at_once_with_its_type) {
    settings.setBool("flag", true);
    settings.setInteger("number", std::numeric_limits<std::int64_t>::min());
    settings.setString("text", "Größe 📷");
    EXPECT_TRUE(settings.boolForKey("flag"));
    EXPECT_EQ(settings.objectForKey("number"),
              SettingsValue(std::numeric_limits<std::int64_t>::min()));
    EXPECT_EQ(settings.stringForKey("text"), "Größe 📷");
}

TEST_F(SettingsStoreTest, writes_go_through_to_the_back_end_in_their_order) {
    settings.setBool("b", true);
    settings.setInteger("a", 18);
    settings.setString("c", "x");
    settings.setBool("b", true);
    EXPECT_THAT(backend.writes, ElementsAre("b = true", "a = 18", "c = \"x\"", "b = true"));
}

TEST_F(SettingsStoreTest, nothing_is_cached) {
    settings.setBool("flag", true);
    backend.values["flag"] = false;
    EXPECT_FALSE(settings.boolForKey("flag"));
}

TEST_F(SettingsStoreTest, a_registered_value_answers_until_the_key_is_written) {
    settings.registerDefaults({{"flag", true}, {"text", std::string("here")}});
    EXPECT_TRUE(settings.boolForKey("flag"));
    EXPECT_EQ(settings.stringForKey("text"), "here");
    settings.setBool("flag", false);
    settings.setString("text", "there");
    EXPECT_FALSE(settings.boolForKey("flag"));
    EXPECT_EQ(settings.stringForKey("text"), "there");
}

TEST_F(SettingsStoreTest, a_raw_read_consults_the_registered_values_too) {
    settings.registerDefaults({{"flag", true}});
    EXPECT_EQ(settings.objectForKey("flag"), SettingsValue(true));
    settings.setBool("flag", false);
    EXPECT_EQ(settings.objectForKey("flag"), SettingsValue(false));
}

TEST_F(SettingsStoreTest, a_later_registration_adds_to_the_earlier_and_replaces_its_keys) {
    settings.registerDefaults({{"one", true}, {"two", true}});
    settings.registerDefaults({{"two", false}, {"three", true}});
    EXPECT_TRUE(settings.boolForKey("one"));
    EXPECT_FALSE(settings.boolForKey("two"));
    EXPECT_TRUE(settings.boolForKey("three"));
}

TEST_F(SettingsStoreTest, registered_values_are_never_persisted) {
    app::registerDefaultSettings(settings);
    EXPECT_TRUE(backend.values.empty());
    EXPECT_THAT(backend.writes, ElementsAre());
    const app::SettingsStore nextLaunch(backend);
    EXPECT_FALSE(nextLaunch.boolForKey(keys::saveToDownloads));
}

TEST_F(SettingsStoreTest, a_stored_value_of_another_type_counts_as_absent) {
    settings.registerDefaults({{"flag", true}, {"text", std::string("registered")}});
    settings.setString("flag", "no");
    settings.setInteger("text", 7);
    EXPECT_TRUE(settings.boolForKey("flag"));
    EXPECT_EQ(settings.stringForKey("text"), "registered");
    settings.setInteger("other", 1);
    EXPECT_FALSE(settings.boolForKey("other"));
    EXPECT_EQ(settings.stringForKey("other"), std::nullopt);
}

TEST_F(SettingsStoreTest, a_raw_read_shows_a_stored_value_of_another_type) {
    settings.setString(keys::screenshotKeyCode, "eighteen");
    EXPECT_EQ(settings.objectForKey(keys::screenshotKeyCode),
              SettingsValue(std::string("eighteen")));
}

TEST_F(SettingsStoreTest, a_value_that_could_not_be_made_persistent_still_holds) {
    backend.writeError = base::Error{base::ErrorKind::failed, "The disk is full."};
    settings.setBool(keys::playSounds, true);
    EXPECT_TRUE(settings.boolForKey(keys::playSounds));
}

TEST_F(SettingsStoreTest, an_observer_sees_each_write_of_its_key_after_it_was_made) {
    std::vector<bool> seen;
    const auto observation =
        settings.observe("flag", [&] { seen.push_back(settings.boolForKey("flag")); });
    settings.setBool("flag", true);
    settings.setBool("other", true);
    settings.setBool("flag", false);
    EXPECT_THAT(seen, ElementsAre(true, false));
}

TEST_F(SettingsStoreTest, an_observer_sees_what_another_program_writes_or_deletes) {
    settings.registerDefaults({{"flag", true}});
    std::vector<bool> seen;
    const auto observation =
        settings.observe("flag", [&] { seen.push_back(settings.boolForKey("flag")); });
    backend.changeFromOutside("flag", false);
    backend.changeFromOutside("other", true);
    backend.changeFromOutside("flag", std::nullopt);
    EXPECT_THAT(seen, ElementsAre(false, true));
}

TEST_F(SettingsStoreTest, an_observation_that_is_gone_is_not_called) {
    int calls = 0;
    {
        const auto observation = settings.observe("flag", [&] { ++calls; });
    }
    settings.setBool("flag", true);
    EXPECT_EQ(calls, 0);
}

TEST_F(SettingsStoreTest, an_observation_may_outlive_the_store) {
    auto shortLived = std::make_unique<app::SettingsStore>(backend);
    int calls = 0;
    const auto observation = shortLived->observe("flag", [&] { ++calls; });
    shortLived.reset();
    EXPECT_FALSE(backend.hasChangeHandler());
    backend.changeFromOutside("flag", true);
    EXPECT_EQ(calls, 0);
}

TEST_F(SettingsStoreTest, the_effective_values_of_a_fresh_store) {
    app::registerDefaultSettings(settings);
    EXPECT_TRUE(settings.boolForKey("saveToDownloads"));
    EXPECT_FALSE(settings.boolForKey("saveOCRToDownloads"));
    EXPECT_TRUE(settings.boolForKey("copyToClipboard"));
    EXPECT_TRUE(settings.boolForKey("copyOCRToClipboard"));
    EXPECT_FALSE(settings.boolForKey("showNotifications"));
    EXPECT_TRUE(settings.boolForKey("playSounds"));
    EXPECT_TRUE(settings.boolForKey("captureShadows"));
    EXPECT_FALSE(settings.boolForKey("hideDockIcon"));
}

TEST_F(SettingsStoreTest, exactly_eight_keys_are_registered) {
    app::registerDefaultSettings(settings);
    for (const char* key :
         {"saveToDownloads", "saveOCRToDownloads", "copyToClipboard", "copyOCRToClipboard",
          "showNotifications", "playSounds", "captureShadows", "hideDockIcon"}) {
        EXPECT_NE(settings.objectForKey(key), std::nullopt) << key;
    }
    for (const char* key :
         {"screenshotSavePath", "ocrSavePath", "hasCompletedFirstRun", "useShortcutForScreenshot",
          "useCmdShift2", "screenshotKeyCode", "screenshotModifiers", "ocrKeyCode", "ocrModifiers",
          "shortcutsEnabledMigration_v1", "shortcutsDefaultKeyMigration_v2"}) {
        EXPECT_EQ(settings.objectForKey(key), std::nullopt) << key;
    }
}

TEST(SettingsKeys, carry_the_names_under_which_the_values_are_stored) {
    EXPECT_STREQ(keys::saveToDownloads, "saveToDownloads");
    EXPECT_STREQ(keys::saveOCRToDownloads, "saveOCRToDownloads");
    EXPECT_STREQ(keys::copyToClipboard, "copyToClipboard");
    EXPECT_STREQ(keys::copyOCRToClipboard, "copyOCRToClipboard");
    EXPECT_STREQ(keys::showNotifications, "showNotifications");
    EXPECT_STREQ(keys::playSounds, "playSounds");
    EXPECT_STREQ(keys::captureShadows, "captureShadows");
    EXPECT_STREQ(keys::hideDockIcon, "hideDockIcon");
    EXPECT_STREQ(keys::screenshotSavePath, "screenshotSavePath");
    EXPECT_STREQ(keys::ocrSavePath, "ocrSavePath");
    EXPECT_STREQ(keys::hasCompletedFirstRun, "hasCompletedFirstRun");
    EXPECT_STREQ(keys::useShortcutForScreenshot, "useShortcutForScreenshot");
    EXPECT_STREQ(keys::useCmdShift2, "useCmdShift2");
    EXPECT_STREQ(keys::screenshotKeyCode, "screenshotKeyCode");
    EXPECT_STREQ(keys::screenshotModifiers, "screenshotModifiers");
    EXPECT_STREQ(keys::ocrKeyCode, "ocrKeyCode");
    EXPECT_STREQ(keys::ocrModifiers, "ocrModifiers");
    EXPECT_STREQ(keys::shortcutsEnabledMigrationV1, "shortcutsEnabledMigration_v1");
    EXPECT_STREQ(keys::shortcutsDefaultKeyMigrationV2, "shortcutsDefaultKeyMigration_v2");
}

}  // namespace
