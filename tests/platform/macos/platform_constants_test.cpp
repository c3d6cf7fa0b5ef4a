#include "platform/macos/platform_constants.h"

#include <gtest/gtest.h>

#include "app/application.h"
#include "app/windows.h"
#include "capture/capture_service.h"
#include "overlay/selection_window.h"
#include "overlay/virtual_key_codes.h"
#include "shortcuts/hot_key_service.h"
#include "shortcuts/key_monitor.h"
#include "shortcuts/shortcut_manager.h"
#include "ui/login_item_service.h"

// That the figures are those of the system's symbols is asserted in the adapters, which
// scripts/check-macos reads.
namespace {

using namespace platform::macos;

TEST(PlatformConstants, are_the_figures_that_the_system_expects) {
    EXPECT_EQ(panelStyleMask, 0x8080U);
    EXPECT_EQ(panelBacking, 2U);
    EXPECT_EQ(panelLevel, 1000);
    EXPECT_EQ(panelCollectionBehavior, 0x141U);
    EXPECT_EQ(panelTrackingOptions, 0x283U);
    EXPECT_EQ(recorderEventMask, 5120U);
    EXPECT_EQ(tapLocation, 1U);
    EXPECT_EQ(tapPlacement, 0U);
    EXPECT_EQ(tapOptions, 0U);
    EXPECT_EQ(tapEventMask, 1024U);
    EXPECT_EQ(hotKeySignature, 0x42415231U);
    EXPECT_EQ(hotKeyEventKind, 5U);
    EXPECT_EQ(hotKeyOptions, 0U);
    EXPECT_EQ(notificationOptions, 6U);
    EXPECT_EQ(recognitionLevel, 0);
    EXPECT_EQ(playerControlsStyle, 0);
    EXPECT_STREQ(menuBarSymbol, "inset.filled.rectangle.and.pointer.arrow");
}

/// Four characters, the first in the most significant byte.
std::uint32_t fourCharacters(const char (&text)[5]) {
    std::uint32_t code = 0;
    for (int index = 0; index < 4; ++index) {
        code = code << 8 | static_cast<unsigned char>(text[index]);
    }
    return code;
}

TEST(PlatformConstants, that_are_four_characters_have_the_first_one_on_top) {
    EXPECT_EQ(hotKeySignature, fourCharacters("BAR1"));
    EXPECT_EQ(hotKeyEventClass, fourCharacters("keyb"));
    EXPECT_EQ(hotKeyParameterName, fourCharacters("----"));
    EXPECT_EQ(hotKeyParameterType, fourCharacters("hkid"));
    EXPECT_EQ(capturePixelFormat, fourCharacters("BGRA"));
}

TEST(PlatformConstants, of_the_panel_are_what_the_window_of_the_overlay_asks_for) {
    const overlay::PanelConfiguration panel = overlay::SelectionWindow::configuration();
    EXPECT_EQ(panel.styleMask, panelStyleMask);
    EXPECT_EQ(panel.backing, panelBacking);
    EXPECT_EQ(panel.level, panelLevel);
    EXPECT_EQ(panel.collectionBehavior, panelCollectionBehavior);
    EXPECT_EQ(panel.trackingAreaOptions, panelTrackingOptions);
}

TEST(PlatformConstants, of_windows_lie_under_their_background) {
    EXPECT_EQ(windowMaterial, 21);
}

TEST(PlatformConstants, of_the_ports_are_the_systems_own) {
    EXPECT_EQ(shortcuts::hotKeySignature, hotKeySignature);
    EXPECT_EQ(static_cast<std::uint32_t>(capture::PixelFormat::bgra), capturePixelFormat);
    EXPECT_EQ(static_cast<int>(app::WindowLevel::floating), 3);
    EXPECT_EQ(static_cast<int>(app::ActivationPolicy::regular), 0);
    EXPECT_EQ(static_cast<int>(app::ActivationPolicy::accessory), 1);
    EXPECT_EQ(static_cast<int>(ui::LoginItemStatus::enabled), 1);
    EXPECT_EQ(shortcuts::eventHotKeyExistsErr, -9878);
    EXPECT_EQ(overlay::spaceKeyCode, 49U);
    EXPECT_EQ(overlay::escapeKeyCode, 53U);
}

TEST(PlatformConstants, of_the_modifiers_are_the_bits_of_events_and_of_hot_keys) {
    EXPECT_EQ(shortcuts::capsLockFlag, 0x10000U);
    EXPECT_EQ(shortcuts::shiftFlag, 0x20000U);
    EXPECT_EQ(shortcuts::controlFlag, 0x40000U);
    EXPECT_EQ(shortcuts::optionFlag, 0x80000U);
    EXPECT_EQ(shortcuts::commandFlag, 0x100000U);
    EXPECT_EQ(overlay::optionModifierFlag, shortcuts::optionFlag);
    EXPECT_EQ(shortcuts::commandModifier, 256U);
    EXPECT_EQ(shortcuts::shiftModifier, 512U);
    EXPECT_EQ(shortcuts::optionModifier, 2048U);
    EXPECT_EQ(shortcuts::controlModifier, 4096U);
}

}  // namespace
