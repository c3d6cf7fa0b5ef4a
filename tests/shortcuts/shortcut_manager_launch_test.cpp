#include <gmock/gmock.h>

#include "shortcut_manager_fixture.h"

namespace {

using app::SettingsValue;
using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::chrono_literals;
namespace keys = app::keys;

SettingsValue integer(std::int64_t value) {
    return value;
}

class ShortcutManagerLaunchTest : public ShortcutManagerFixture {
  protected:
    void TearDown() override {
        // The registration that always follows the construction.
        queue.advance(200ms);
    }
};

// What a fresh store ends with

TEST_F(ShortcutManagerLaunchTest, a_fresh_store_is_migrated_and_both_shortcuts_are_on) {
    const auto& shortcuts = construct();
    EXPECT_TRUE(shortcuts.isEnabled());
    EXPECT_TRUE(shortcuts.isCmdShift2Enabled());
    EXPECT_EQ(shortcuts.screenshotKeyCode(), 18);
    EXPECT_EQ(shortcuts.screenshotModifiers(), 768);
    EXPECT_EQ(shortcuts.ocrKeyCode(), 19);
    EXPECT_EQ(shortcuts.ocrModifiers(), 768);
    EXPECT_TRUE(hotKeys.isRegistered({18, 768}));
    EXPECT_TRUE(hotKeys.isRegistered({19, 768}));
    EXPECT_EQ(hotKeys.handlers.size(), 1U);
}

TEST_F(ShortcutManagerLaunchTest, a_fresh_store_holds_five_keys_afterwards) {
    construct();
    EXPECT_EQ(backend.values,
              (std::map<std::string, SettingsValue>{{keys::useShortcutForScreenshot, true},
                                                    {keys::useCmdShift2, true},
                                                    {keys::screenshotKeyCode, integer(18)},
                                                    {keys::shortcutsEnabledMigrationV1, true},
                                                    {keys::shortcutsDefaultKeyMigrationV2, true}}));
}

TEST_F(ShortcutManagerLaunchTest, a_fresh_store_is_written_in_this_order) {
    construct();
    EXPECT_THAT(
        backend.writes,
        ElementsAre("useShortcutForScreenshot = true", "useCmdShift2 = true",
                    "shortcutsEnabledMigration_v1 = true", "screenshotKeyCode = 18",
                    "shortcutsDefaultKeyMigration_v2 = true", "useShortcutForScreenshot = true",
                    "useCmdShift2 = true", "screenshotKeyCode = 18"));
}

TEST_F(ShortcutManagerLaunchTest, every_step_of_a_first_launch_comes_in_its_order) {
    permissions.accessibilityIsTrusted = false;
    construct();
    EXPECT_THAT(
        calls.calls(),
        ElementsAre(
            "is accessibility trusted",
            "log: ℹ️ Accessibility not yet granted - skipping system prompt request",
            "log: 🔧 Migrating shortcuts: forcing both to enabled",
            "setting: useShortcutForScreenshot = true", "setting: useCmdShift2 = true",
            "setting: shortcutsEnabledMigration_v1 = true",
            "log: 🔧 Migrating screenshot shortcut: forcing to Cmd+Shift+1",
            "setting: screenshotKeyCode = 18", "setting: shortcutsDefaultKeyMigration_v2 = true",
            "setting: useShortcutForScreenshot = true", "register: 18/768 id 1",
            "log: ✅ Screenshot shortcut registered successfully (keyCode: 18)", "install handler",
            "log: ✅ Event handler installed successfully", "setting: useCmdShift2 = true",
            "unregister: 1", "remove handler: 2", "register: 18/768 id 1",
            "log: ✅ Screenshot shortcut registered successfully (keyCode: 18)",
            "register: 19/768 id 2", "log: ✅ OCR shortcut registered successfully (keyCode: 19)",
            "install handler", "log: ✅ Event handler installed successfully",
            "setting: screenshotKeyCode = 18", "unregister: 3", "unregister: 4",
            "remove handler: 5", "register: 18/768 id 1",
            "log: ✅ Screenshot shortcut registered successfully (keyCode: 18)",
            "register: 19/768 id 2", "log: ✅ OCR shortcut registered successfully (keyCode: 19)",
            "install handler", "log: ✅ Event handler installed successfully"));
}

// The probe

TEST_F(ShortcutManagerLaunchTest, with_accessibility_granted_no_line_speaks_of_it) {
    storeMigrated();
    construct();
    EXPECT_THAT(calls.startingWith({"log: ℹ️ Accessibility"}), IsEmpty());
    EXPECT_EQ(calls.count("is accessibility trusted"), 1);
}

TEST_F(ShortcutManagerLaunchTest, without_accessibility_the_shortcuts_are_registered_all_the_same) {
    permissions.accessibilityIsTrusted = false;
    construct();
    EXPECT_EQ(hotKeys.hotKeys.size(), 2U);
}

// The migrations

TEST_F(ShortcutManagerLaunchTest, an_old_store_with_the_shortcut_off_is_switched_on_once) {
    backend.values[keys::useShortcutForScreenshot] = false;
    backend.values[keys::useCmdShift2] = false;
    const auto& shortcuts = construct();
    EXPECT_TRUE(shortcuts.isEnabled());
    EXPECT_TRUE(shortcuts.isCmdShift2Enabled());
}

TEST_F(ShortcutManagerLaunchTest, a_store_that_was_migrated_keeps_its_switches) {
    storeMigrated();
    backend.values[keys::useShortcutForScreenshot] = false;
    const auto& shortcuts = construct();
    EXPECT_FALSE(shortcuts.isEnabled());
    EXPECT_TRUE(shortcuts.isCmdShift2Enabled());
    EXPECT_THAT(calls.startingWith({"log: 🔧"}), IsEmpty());
}

TEST_F(ShortcutManagerLaunchTest, another_key_becomes_the_one_and_its_modifiers_stay) {
    backend.values[keys::shortcutsEnabledMigrationV1] = true;
    backend.values[keys::screenshotKeyCode] = integer(20);
    backend.values[keys::screenshotModifiers] = integer(4096);
    const auto& shortcuts = construct();
    EXPECT_EQ(shortcuts.screenshotKeyCode(), 18);
    EXPECT_EQ(shortcuts.screenshotModifiers(), 4096);
    EXPECT_TRUE(hotKeys.isRegistered({18, 4096}));
    EXPECT_THAT(calls.startingWith({"log: 🔧"}),
                ElementsAre("log: 🔧 Migrating screenshot shortcut: forcing to Cmd+Shift+1"));
}

TEST_F(ShortcutManagerLaunchTest, a_store_that_was_migrated_keeps_its_key) {
    storeMigrated();
    backend.values[keys::screenshotKeyCode] = integer(20);
    EXPECT_EQ(construct().screenshotKeyCode(), 20);
    EXPECT_TRUE(hotKeys.isRegistered({20, 768}));
}

TEST_F(ShortcutManagerLaunchTest, a_flag_that_is_stored_false_counts_as_not_migrated) {
    backend.values[keys::shortcutsEnabledMigrationV1] = false;
    backend.values[keys::shortcutsDefaultKeyMigrationV2] = true;
    construct();
    EXPECT_THAT(calls.startingWith({"log: 🔧"}),
                ElementsAre("log: 🔧 Migrating shortcuts: forcing both to enabled"));
    EXPECT_FALSE(backend.values.contains(keys::screenshotKeyCode));
}

// Loading

TEST_F(ShortcutManagerLaunchTest, a_store_without_shortcuts_registers_twice) {
    storeMigrated();
    construct();
    EXPECT_THAT(backend.writes,
                ElementsAre("useShortcutForScreenshot = true", "useCmdShift2 = true"));
    EXPECT_EQ(calls.count("install handler"), 2);
}

TEST_F(ShortcutManagerLaunchTest, a_full_store_is_written_back_and_registers_six_times) {
    storeMigrated();
    backend.values[keys::useShortcutForScreenshot] = true;
    backend.values[keys::useCmdShift2] = true;
    backend.values[keys::screenshotKeyCode] = integer(20);
    backend.values[keys::screenshotModifiers] = integer(256);
    backend.values[keys::ocrKeyCode] = integer(21);
    backend.values[keys::ocrModifiers] = integer(6400);
    construct();
    EXPECT_THAT(backend.writes,
                ElementsAre("useShortcutForScreenshot = true", "useCmdShift2 = true",
                            "screenshotKeyCode = 20", "screenshotModifiers = 256",
                            "ocrKeyCode = 21", "ocrModifiers = 6400"));
    EXPECT_EQ(calls.count("install handler"), 6);
    EXPECT_TRUE(hotKeys.isRegistered({20, 256}));
    EXPECT_TRUE(hotKeys.isRegistered({21, 6400}));
    EXPECT_EQ(hotKeys.hotKeys.size(), 2U);
    EXPECT_EQ(hotKeys.handlers.size(), 1U);
}

TEST_F(ShortcutManagerLaunchTest, values_of_another_type_count_as_absent) {
    storeMigrated();
    backend.values[keys::useShortcutForScreenshot] = integer(0);
    backend.values[keys::useCmdShift2] = std::string("false");
    backend.values[keys::screenshotKeyCode] = std::string("20");
    backend.values[keys::screenshotModifiers] = true;
    backend.values[keys::ocrKeyCode] = std::string("");
    backend.values[keys::ocrModifiers] = false;
    const auto& shortcuts = construct();
    EXPECT_TRUE(shortcuts.isEnabled());
    EXPECT_TRUE(shortcuts.isCmdShift2Enabled());
    EXPECT_EQ(shortcuts.screenshotKeyCode(), 18);
    EXPECT_EQ(shortcuts.screenshotModifiers(), 768);
    EXPECT_EQ(shortcuts.ocrKeyCode(), 19);
    EXPECT_EQ(shortcuts.ocrModifiers(), 768);
    EXPECT_EQ(calls.count("install handler"), 2);
    EXPECT_EQ(backend.values[keys::screenshotKeyCode], SettingsValue(std::string("20")));
}

TEST_F(ShortcutManagerLaunchTest, both_switches_off_register_nothing) {
    storeMigrated();
    backend.values[keys::useShortcutForScreenshot] = false;
    backend.values[keys::useCmdShift2] = false;
    construct();
    EXPECT_THAT(hotKeys.hotKeys, IsEmpty());
    EXPECT_THAT(hotKeys.handlers, IsEmpty());
    EXPECT_EQ(log.lines.back(), "ℹ️ No shortcuts registered, event handler not installed");
}

// What follows by itself

TEST_F(ShortcutManagerLaunchTest, the_shortcuts_are_registered_once_more_after_200_ms) {
    storeMigrated();
    construct();
    calls.clear();
    queue.advance(199ms);
    EXPECT_THAT(calls.calls(), IsEmpty());
    queue.advance(1ms);
    EXPECT_EQ(calls.count("register: 18/768 id 1"), 1);
    EXPECT_EQ(calls.count("register: 19/768 id 2"), 1);
}

TEST_F(ShortcutManagerLaunchTest, the_first_activation_registers_anew_100_ms_later) {
    settled();
    notifications.post(app::applicationDidBecomeActiveNotification);
    EXPECT_THAT(calls.calls(),
                ElementsAre("log: 🔄 App became active - re-registering shortcuts to ensure they "
                            "work"));
    calls.clear();
    queue.advance(99ms);
    EXPECT_THAT(calls.calls(), IsEmpty());
    queue.advance(1ms);
    EXPECT_EQ(calls.count("register: 18/768 id 1"), 1);
    EXPECT_EQ(calls.count("register: 19/768 id 2"), 1);
}

TEST_F(ShortcutManagerLaunchTest, later_activations_have_no_effect) {
    settled();
    notifications.post(app::applicationDidBecomeActiveNotification);
    notifications.post(app::applicationDidBecomeActiveNotification);
    queue.advance(100ms);
    calls.clear();
    notifications.post(app::applicationDidBecomeActiveNotification);
    queue.advance(1000ms);
    EXPECT_THAT(calls.calls(), IsEmpty());
}

TEST_F(ShortcutManagerLaunchTest, what_was_to_follow_does_nothing_once_the_manager_is_gone) {
    construct();
    notifications.post(app::applicationDidBecomeActiveNotification);
    hotKeys.press({shortcuts::hotKeySignature, 1});
    manager.reset();
    calls.clear();
    notifications.post(app::applicationDidBecomeActiveNotification);
    queue.advance(1000ms);
    EXPECT_THAT(calls.calls(), IsEmpty());
}

TEST_F(ShortcutManagerLaunchTest, a_manager_that_ends_gives_everything_back) {
    settled();
    manager.reset();
    EXPECT_THAT(hotKeys.hotKeys, IsEmpty());
    EXPECT_THAT(hotKeys.handlers, IsEmpty());
}

TEST(SharedShortcutManagerDeathTest, the_shared_manager_needs_the_program_to_be_composed) {
    EXPECT_DEATH(shortcuts::ShortcutManager::shared(), "before the program was composed");
}

}  // namespace
