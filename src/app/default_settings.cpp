#include "app/default_settings.h"

#include "app/settings_keys.h"

namespace app {

void registerDefaultSettings(SettingsStore& settings) {
    settings.registerDefaults({
        {keys::saveToDownloads, true},
        {keys::saveOCRToDownloads, false},
        {keys::copyToClipboard, true},
        {keys::copyOCRToClipboard, true},
        {keys::showNotifications, false},
        {keys::playSounds, true},
        {keys::captureShadows, true},
        {keys::hideDockIcon, false},
    });
}

}  // namespace app
