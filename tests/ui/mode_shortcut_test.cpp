#include "ui/mode_shortcut.h"

#include <gmock/gmock.h>

#include "shortcuts/shortcut_manager_fixture.h"

namespace {

using base::CaptureMode;
using testing::Contains;
using testing::ElementsAre;
using ui::ModeShortcut;

class ModeShortcutTest : public ShortcutManagerFixture {
  protected:
    void SetUp() override {
        storeMigrated();
        settled();
        backend.writes.clear();
    }
    ModeShortcut shortcut(CaptureMode mode) { return {*manager, mode}; }
};

TEST_F(ModeShortcutTest, each_mode_has_its_own_default) {
    EXPECT_EQ(shortcut(CaptureMode::screenshot).keyCode(), 18);
    EXPECT_EQ(shortcut(CaptureMode::ocr).keyCode(), 19);
    for (const auto mode : {CaptureMode::screenshot, CaptureMode::ocr}) {
        EXPECT_EQ(shortcut(mode).modifiers(), 768);
        EXPECT_TRUE(shortcut(mode).isDefault());
    }
}

TEST_F(ModeShortcutTest, another_key_or_another_mask_is_not_the_default) {
    shortcut(CaptureMode::screenshot).setKeyCode(19);
    shortcut(CaptureMode::ocr).setModifiers(256);
    EXPECT_FALSE(shortcut(CaptureMode::screenshot).isDefault());
    EXPECT_FALSE(shortcut(CaptureMode::ocr).isDefault());
}

TEST_F(ModeShortcutTest, a_change_goes_through_the_manager_which_stores_and_registers) {
    shortcut(CaptureMode::ocr).setKeyCode(20);
    EXPECT_THAT(backend.writes, ElementsAre("ocrKeyCode = 20"));
    EXPECT_THAT(calls.calls(), Contains("register: 20/768 id 2"));
    shortcut(CaptureMode::screenshot).setModifiers(4096);
    EXPECT_THAT(backend.writes, ElementsAre("ocrKeyCode = 20", "screenshotModifiers = 4096"));
    EXPECT_THAT(calls.calls(), Contains("register: 18/4096 id 1"));
}

TEST_F(ModeShortcutTest, a_reset_sets_the_key_and_then_the_modifiers) {
    auto screenshot = shortcut(CaptureMode::screenshot);
    auto ocr = shortcut(CaptureMode::ocr);
    screenshot.setKeyCode(0);
    ocr.setModifiers(2048);
    backend.writes.clear();
    screenshot.reset();
    ocr.reset();
    EXPECT_THAT(backend.writes, ElementsAre("screenshotKeyCode = 18", "screenshotModifiers = 768",
                                            "ocrKeyCode = 19", "ocrModifiers = 768"));
    EXPECT_TRUE(screenshot.isDefault());
    EXPECT_TRUE(ocr.isDefault());
}

TEST_F(ModeShortcutTest, a_change_is_told_as_long_as_the_observation_lives) {
    int count = 0;
    {
        const auto observation = shortcut(CaptureMode::screenshot).observeChanges([&] { ++count; });
        manager->setScreenshotKeyCode(21);
        EXPECT_EQ(count, 1);
    }
    manager->setScreenshotKeyCode(22);
    EXPECT_EQ(count, 1);
}

}  // namespace
