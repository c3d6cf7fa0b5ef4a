#pragma once

/// The names of the stored settings. They are what other programs rely on: never rename one.
namespace app::keys {

// Bool, registered at launch.
inline constexpr const char* saveToDownloads = "saveToDownloads";
inline constexpr const char* saveOCRToDownloads = "saveOCRToDownloads";
inline constexpr const char* copyToClipboard = "copyToClipboard";
inline constexpr const char* copyOCRToClipboard = "copyOCRToClipboard";
inline constexpr const char* showNotifications = "showNotifications";
inline constexpr const char* playSounds = "playSounds";
inline constexpr const char* captureShadows = "captureShadows";
inline constexpr const char* hideDockIcon = "hideDockIcon";

// String: a folder; empty or absent means that none was chosen.
inline constexpr const char* screenshotSavePath = "screenshotSavePath";
inline constexpr const char* ocrSavePath = "ocrSavePath";

// Bool, written by the first run and read by nothing.
inline constexpr const char* hasCompletedFirstRun = "hasCompletedFirstRun";

// Bool, never registered: the hot-key manager keeps its own value when one is absent.
inline constexpr const char* useShortcutForScreenshot = "useShortcutForScreenshot";
inline constexpr const char* useCmdShift2 = "useCmdShift2";

// Int (virtual key codes and modifier masks), never registered either.
inline constexpr const char* screenshotKeyCode = "screenshotKeyCode";
inline constexpr const char* screenshotModifiers = "screenshotModifiers";
inline constexpr const char* ocrKeyCode = "ocrKeyCode";
inline constexpr const char* ocrModifiers = "ocrModifiers";

// Bool: a migration that is set has run and never runs again.
inline constexpr const char* shortcutsEnabledMigrationV1 = "shortcutsEnabledMigration_v1";
inline constexpr const char* shortcutsDefaultKeyMigrationV2 = "shortcutsDefaultKeyMigration_v2";

}  // namespace app::keys
