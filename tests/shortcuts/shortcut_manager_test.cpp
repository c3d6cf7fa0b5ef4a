#include "shortcuts/shortcut_manager.h"

#include <gmock/gmock.h>

#include <limits>

#include "shortcut_manager_fixture.h"

namespace {

using app::SettingsValue;
using testing::ElementsAre;
using testing::IsEmpty;
namespace keys = app::keys;

class ShortcutManagerTest : public ShortcutManagerFixture {
  protected:
    ShortcutManagerTest() { settled(); }

    static constexpr const char* screenshotDone =
        "✅ Screenshot shortcut registered successfully (keyCode: 18)";
    static constexpr const char* ocrDone = "✅ OCR shortcut registered successfully (keyCode: 19)";
    static constexpr const char* handlerDone = "✅ Event handler installed successfully";
    static constexpr const char* nothingDone =
        "ℹ️ No shortcuts registered, event handler not installed";
};

// Registration

TEST_F(ShortcutManagerTest, a_registration_rebuilds_everything_from_scratch) {
    manager->registerShortcuts();
    ASSERT_EQ(calls.calls().size(), 9U);
    EXPECT_THAT(calls.calls()[0], testing::StartsWith("unregister: "));
    EXPECT_THAT(calls.calls()[1], testing::StartsWith("unregister: "));
    EXPECT_THAT(calls.calls()[2], testing::StartsWith("remove handler: "));
    EXPECT_EQ(calls.calls()[3], "register: 18/768 id 1");
    EXPECT_EQ(calls.calls()[5], "register: 19/768 id 2");
    EXPECT_EQ(calls.calls()[7], "install handler");
    EXPECT_THAT(log.lines, ElementsAre(screenshotDone, ocrDone, handlerDone));
    EXPECT_EQ(hotKeys.hotKeys.size(), 2U);
    EXPECT_EQ(hotKeys.handlers.size(), 1U);
}

TEST_F(ShortcutManagerTest, the_hot_keys_carry_the_signature_of_the_program) {
    std::vector<shortcuts::EventHotKeyID> identities;
    for (const auto& [ref, hotKey] : hotKeys.hotKeys) {
        identities.push_back(hotKey.hotKeyID);
    }
    EXPECT_THAT(identities, ElementsAre(shortcuts::EventHotKeyID{0x42415231, 1},
                                        shortcuts::EventHotKeyID{0x42415231, 2}));
}

TEST_F(ShortcutManagerTest, the_modifier_masks_are_those_of_stored_shortcuts) {
    EXPECT_EQ(shortcuts::commandModifier, 256U);
    EXPECT_EQ(shortcuts::shiftModifier, 512U);
    EXPECT_EQ(shortcuts::optionModifier, 2048U);
    EXPECT_EQ(shortcuts::controlModifier, 4096U);
}

TEST_F(ShortcutManagerTest, unregistering_twice_asks_the_service_once) {
    manager->unregisterShortcuts();
    EXPECT_EQ(calls.calls().size(), 3U);
    manager->unregisterShortcuts();
    EXPECT_EQ(calls.calls().size(), 3U);
    EXPECT_THAT(hotKeys.hotKeys, IsEmpty());
    EXPECT_THAT(hotKeys.handlers, IsEmpty());
}

TEST_F(ShortcutManagerTest, a_screenshot_shortcut_that_is_taken_does_not_hinder_the_other) {
    hotKeys.takenByOthers.insert({18, 768});
    manager->registerShortcuts();
    EXPECT_THAT(log.lines,
                ElementsAre("❌ Failed to register screenshot shortcut. Status: -9878",
                            "   This might be because Cmd+Shift+1 is already used by macOS.",
                            ocrDone, handlerDone));
    EXPECT_EQ(hotKeys.hotKeys.size(), 1U);
    EXPECT_EQ(hotKeys.handlers.size(), 1U);
}

TEST_F(ShortcutManagerTest, the_hint_names_the_default_key_whatever_the_key_is) {
    hotKeys.unmappableKeys.insert(200);
    manager->setScreenshotKeyCode(200);
    EXPECT_EQ(log.lines.at(0), "❌ Failed to register screenshot shortcut. Status: -50");
    EXPECT_EQ(log.lines.at(1), "   This might be because Cmd+Shift+1 is already used by macOS.");
}

TEST_F(ShortcutManagerTest, an_ocr_shortcut_that_is_taken_does_not_hinder_the_other) {
    hotKeys.takenByOthers.insert({19, 768});
    manager->registerShortcuts();
    EXPECT_THAT(log.lines,
                ElementsAre(screenshotDone, "❌ Failed to register OCR shortcut. Status: -9878",
                            handlerDone));
    EXPECT_EQ(hotKeys.handlers.size(), 1U);
}

TEST_F(ShortcutManagerTest, with_both_taken_no_handler_is_installed) {
    hotKeys.takenByOthers = {{18, 768}, {19, 768}};
    manager->registerShortcuts();
    EXPECT_THAT(log.lines,
                ElementsAre("❌ Failed to register screenshot shortcut. Status: -9878",
                            "   This might be because Cmd+Shift+1 is already used by macOS.",
                            "❌ Failed to register OCR shortcut. Status: -9878", nothingDone));
    EXPECT_THAT(hotKeys.handlers, IsEmpty());
}

TEST_F(ShortcutManagerTest, with_the_screenshot_off_only_the_other_is_registered) {
    manager->setEnabled(false);
    EXPECT_THAT(log.lines, ElementsAre(ocrDone, handlerDone));
    EXPECT_FALSE(hotKeys.isRegistered({18, 768}));
    EXPECT_EQ(hotKeys.handlers.size(), 1U);
}

TEST_F(ShortcutManagerTest, with_text_recognition_off_only_the_screenshot_is_registered) {
    manager->setCmdShift2Enabled(false);
    EXPECT_THAT(log.lines, ElementsAre(screenshotDone, handlerDone));
    EXPECT_FALSE(hotKeys.isRegistered({19, 768}));
}

TEST_F(ShortcutManagerTest, with_text_recognition_off_and_the_screenshot_taken_nothing_is_left) {
    hotKeys.takenByOthers.insert({18, 768});
    manager->setCmdShift2Enabled(false);
    EXPECT_EQ(log.lines.back(), nothingDone);
    EXPECT_THAT(hotKeys.handlers, IsEmpty());
}

TEST_F(ShortcutManagerTest, a_handler_that_cannot_be_installed_leaves_the_hot_keys) {
    hotKeys.installStatus = -9873;
    manager->registerShortcuts();
    EXPECT_EQ(log.lines.back(), "❌ Failed to install event handler. Status: -9873");
    EXPECT_EQ(hotKeys.hotKeys.size(), 2U);
    calls.clear();
    hotKeys.installStatus = shortcuts::noErr;
    manager->registerShortcuts();
    EXPECT_THAT(calls.startingWith({"remove handler"}), IsEmpty());
    EXPECT_EQ(hotKeys.hotKeys.size(), 2U);
    EXPECT_EQ(hotKeys.handlers.size(), 1U);
}

TEST_F(ShortcutManagerTest, a_handle_that_failed_before_is_not_given_back) {
    hotKeys.takenByOthers.insert({18, 768});
    manager->registerShortcuts();
    calls.clear();
    manager->registerShortcuts();
    EXPECT_EQ(calls.startingWith({"unregister"}).size(), 1U);
}

TEST_F(ShortcutManagerTest, one_combination_for_both_is_refused_for_the_second) {
    manager->setOcrKeyCode(18);
    EXPECT_THAT(log.lines,
                ElementsAre(screenshotDone, "❌ Failed to register OCR shortcut. Status: -9878",
                            handlerDone));
}

// Setting a value

TEST_F(ShortcutManagerTest, a_set_stores_the_value_and_then_registers) {
    manager->setScreenshotKeyCode(20);
    EXPECT_EQ(manager->screenshotKeyCode(), 20);
    EXPECT_EQ(calls.calls().at(0), "setting: screenshotKeyCode = 20");
    EXPECT_THAT(calls.calls().at(1), testing::StartsWith("unregister: "));
    EXPECT_EQ(log.lines.at(0), "✅ Screenshot shortcut registered successfully (keyCode: 20)");
    EXPECT_TRUE(hotKeys.isRegistered({20, 768}));
}

TEST_F(ShortcutManagerTest, every_value_has_its_own_key) {
    backend.writes.clear();
    manager->setEnabled(false);
    manager->setCmdShift2Enabled(false);
    manager->setScreenshotKeyCode(1);
    manager->setScreenshotModifiers(2);
    manager->setOcrKeyCode(3);
    manager->setOcrModifiers(4);
    EXPECT_THAT(backend.writes,
                ElementsAre("useShortcutForScreenshot = false", "useCmdShift2 = false",
                            "screenshotKeyCode = 1", "screenshotModifiers = 2", "ocrKeyCode = 3",
                            "ocrModifiers = 4"));
    EXPECT_FALSE(manager->isEnabled());
    EXPECT_FALSE(manager->isCmdShift2Enabled());
    EXPECT_EQ(manager->screenshotKeyCode(), 1);
    EXPECT_EQ(manager->screenshotModifiers(), 2);
    EXPECT_EQ(manager->ocrKeyCode(), 3);
    EXPECT_EQ(manager->ocrModifiers(), 4);
}

TEST_F(ShortcutManagerTest, setting_the_same_value_stores_and_registers_again) {
    manager->setOcrModifiers(768);
    EXPECT_EQ(calls.calls().at(0), "setting: ocrModifiers = 768");
    EXPECT_EQ(calls.count("register: 19/768 id 2"), 1);
}

TEST_F(ShortcutManagerTest, observers_are_called_before_the_value_changes) {
    std::vector<std::int64_t> seen;
    const auto observation =
        manager->observeChanges([&] { seen.push_back(manager->screenshotKeyCode()); });
    manager->setScreenshotKeyCode(20);
    manager->setEnabled(true);
    EXPECT_THAT(seen, ElementsAre(18, 20));
    EXPECT_EQ(backend.values[keys::screenshotKeyCode], SettingsValue(std::int64_t{20}));
}

TEST_F(ShortcutManagerTest, the_largest_number_of_32_bits_is_still_a_key_code) {
    manager->setScreenshotKeyCode(4294967295);
    EXPECT_TRUE(hotKeys.isRegistered({4294967295U, 768}));
}

TEST_F(ShortcutManagerTest, zero_is_a_key_code_and_no_modifier_a_mask) {
    manager->setScreenshotKeyCode(0);
    manager->setScreenshotModifiers(0);
    EXPECT_TRUE(hotKeys.isRegistered({0, 0}));
}

TEST_F(ShortcutManagerTest, a_shortcut_that_is_off_may_hold_any_number) {
    manager->setEnabled(false);
    manager->setScreenshotKeyCode(-1);
    EXPECT_THAT(log.lines.back(), handlerDone);
}

class ShortcutManagerDeathTest : public ShortcutManagerTest {};

TEST_F(ShortcutManagerDeathTest, a_number_outside_of_32_bits_ends_the_program) {
    EXPECT_DEATH(manager->setScreenshotKeyCode(-1), "-1");
    EXPECT_DEATH(manager->setScreenshotModifiers(4294967296), "4294967296");
    EXPECT_DEATH(manager->setOcrKeyCode(std::numeric_limits<std::int64_t>::min()), "9223372036");
    EXPECT_DEATH(manager->setOcrModifiers(-768), "-768");
}

// Presses

TEST_F(ShortcutManagerTest, a_press_is_said_at_once_and_dispatched_in_a_later_turn) {
    EXPECT_EQ(hotKeys.press(18, 768), shortcuts::noErr);
    EXPECT_THAT(calls.calls(), ElementsAre("log: 🟡 HotKey event received! ID: 1"));
    queue.runAll();
    EXPECT_THAT(calls.calls(),
                ElementsAre("log: 🟡 HotKey event received! ID: 1",
                            "log: 🟡 Dispatching to takeScreenshot()",
                            "log: 🔵 takeScreenshot() called - Cmd+Shift+1 was pressed",
                            "show screenshot", "log: 🔵 showSelection() called"));
}

TEST_F(ShortcutManagerTest, the_second_shortcut_opens_the_overlay_for_text_recognition) {
    EXPECT_EQ(hotKeys.press(19, 768), shortcuts::noErr);
    queue.runAll();
    EXPECT_THAT(calls.calls(), ElementsAre("log: 🟡 HotKey event received! ID: 2",
                                           "log: 🟡 Dispatching to handleCmdShift2()",
                                           "log: Cmd+Shift+2 pressed - OCR Mode", "show ocr"));
}

TEST_F(ShortcutManagerTest, an_event_of_another_id_is_said_and_nothing_else) {
    EXPECT_EQ(hotKeys.press({shortcuts::hotKeySignature, 3}), shortcuts::noErr);
    EXPECT_EQ(hotKeys.press({shortcuts::hotKeySignature, 0}), shortcuts::noErr);
    queue.runAll();
    EXPECT_THAT(calls.calls(), ElementsAre("log: 🟡 HotKey event received! ID: 3",
                                           "log: 🟡 HotKey event received! ID: 0"));
}

TEST_F(ShortcutManagerTest, the_signature_of_an_event_does_not_matter) {
    hotKeys.press({0, 1});
    queue.runAll();
    EXPECT_EQ(calls.count("show screenshot"), 1);
}

TEST_F(ShortcutManagerTest, every_press_is_dispatched_in_its_order) {
    hotKeys.press(18, 768);
    hotKeys.press(19, 768);
    hotKeys.press(18, 768);
    queue.runAll();
    EXPECT_THAT(calls.startingWith({"show"}),
                ElementsAre("show screenshot", "show ocr", "show screenshot"));
}

TEST_F(ShortcutManagerTest, with_another_key_the_lines_still_name_the_default_ones) {
    manager->setScreenshotKeyCode(20);
    calls.clear();
    hotKeys.press(20, 768);
    queue.runAll();
    EXPECT_EQ(calls.count("log: 🔵 takeScreenshot() called - Cmd+Shift+1 was pressed"), 1);
}

}  // namespace
