#include "app/app_delegate.h"

#include "app/default_settings.h"
#include "app/settings_keys.h"

namespace app {

void AppDelegate::applicationDidFinishLaunching() {
    registerDefaultSettings(mediator_.settings);
    probePermissions();
    mediator_.application.setActivationPolicy(mediator_.settings.boolForKey(keys::hideDockIcon)
                                                  ? ActivationPolicy::accessory
                                                  : ActivationPolicy::regular);
}

void AppDelegate::probePermissions() {
    // The answers are of no interest: a system that protects these resources learns here that the
    // program wants them, so that it is listed where the user grants them.
    (void)mediator_.permissions.canCaptureScreen();
    (void)mediator_.permissions.isAccessibilityTrusted();
    const auto downloads = mediator_.fileManager.downloadsDirectories();
    if (!downloads.empty()) {
        (void)mediator_.fileManager.isReadableFolder(downloads.front());
    }
}

}  // namespace app
