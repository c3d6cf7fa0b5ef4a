#pragma once

#include <string>

#include "app/settings_keys.h"
#include "app/settings_store.h"
#include "ui/setting_binding.h"

namespace ui {

/// The stored settings of the settings view. The fallbacks are the view's own: where a value is
/// registered at the launch, that one shows (for `saveToDownloads` they differ). Main thread.
struct ContentSettings {
    /// `store` outlives the object.
    explicit ContentSettings(app::SettingsStore& store)
        : saveToDownloads(store, app::keys::saveToDownloads, false),
          saveOCRToDownloads(store, app::keys::saveOCRToDownloads, false),
          screenshotSavePath(store, app::keys::screenshotSavePath, ""),
          ocrSavePath(store, app::keys::ocrSavePath, ""),
          copyToClipboard(store, app::keys::copyToClipboard, true),
          copyOCRToClipboard(store, app::keys::copyOCRToClipboard, true),
          showNotifications(store, app::keys::showNotifications, false),
          playSounds(store, app::keys::playSounds, true),
          captureShadows(store, app::keys::captureShadows, true),
          hideDockIcon(store, app::keys::hideDockIcon, false) {}

    SettingBinding<bool> saveToDownloads;
    SettingBinding<bool> saveOCRToDownloads;
    SettingBinding<std::string> screenshotSavePath;
    SettingBinding<std::string> ocrSavePath;
    SettingBinding<bool> copyToClipboard;
    SettingBinding<bool> copyOCRToClipboard;
    SettingBinding<bool> showNotifications;
    SettingBinding<bool> playSounds;
    SettingBinding<bool> captureShadows;
    SettingBinding<bool> hideDockIcon;
};

}  // namespace ui
