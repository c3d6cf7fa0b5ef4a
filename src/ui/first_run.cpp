#include "ui/first_run.h"

#include <utility>

#include "app/settings_keys.h"
#include "ui/permission_probes.h"

namespace ui {

namespace {

const char* settingsPage(Permission permission) {
    switch (permission) {
        case Permission::screenRecording:
            return "x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture";
        case Permission::accessibility:
            return "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility";
        case Permission::filesAndFolders:
            return "x-apple.systempreferences:com.apple.preference.security?"
                   "Privacy_FilesAndFolders";
    }
    return "";
}

const char* explanation(Permission permission) {
    switch (permission) {
        case Permission::screenRecording:
            return "Lumaframe reads the screen to take pictures of it.";
        case Permission::accessibility:
            return "Lumaframe listens for its shortcuts in every program.";
        case Permission::filesAndFolders:
            return "Lumaframe saves into your Downloads folder.";
    }
    return "";
}

}  // namespace

std::string permissionTitle(Permission permission) {
    switch (permission) {
        case Permission::screenRecording:
            return "Screen Recording";
        case Permission::accessibility:
            return "Accessibility";
        case Permission::filesAndFolders:
            return "Files and Folders";
    }
    return "";
}

FirstRun::FirstRun(Mediator mediator, std::function<void()> onRefreshed)
    : mediator_(mediator),
      onRefreshed_(std::move(onRefreshed)),
      activation_(mediator.notifications.observe(app::applicationDidBecomeActiveNotification,
                                                 [this] { refreshStatus(); })) {}

bool FirstRun::isGranted(Permission permission) const {
    switch (permission) {
        case Permission::screenRecording:
            return screenRecordingStatus_;
        case Permission::accessibility:
            return accessibilityStatus_;
        case Permission::filesAndFolders:
            return filesFoldersStatus_;
    }
    return false;
}

void FirstRun::refreshStatus() {
    screenRecordingStatus_ = mediator_.permissions.canCaptureScreen();
    accessibilityStatus_ = mediator_.permissions.isAccessibilityTrusted();
    filesFoldersStatus_ = isDownloadsReadable(mediator_.fileManager);
    onRefreshed_();
}

FirstRunAction FirstRun::actionToOffer() const {
    const PermissionProbes probes{mediator_.permissions, mediator_.fileManager};
    return probes.isEverythingGranted() ? FirstRunAction::getStarted
                                        : FirstRunAction::refreshStatus;
}

void FirstRun::perform(FirstRunAction action) {
    switch (action) {
        case FirstRunAction::refreshStatus:
            refreshStatus();
            return;
        case FirstRunAction::getStarted:
            mediator_.settings.setBool(app::keys::hasCompletedFirstRun, true);
            mediator_.notifications.post(app::closePermissionsWindowNotification);
            return;
    }
}

void FirstRun::openSettingsPage(Permission permission) {
    mediator_.permissions.openSettingsPage(settingsPage(permission));
}

std::string FirstRun::help(Permission permission) const {
    const std::string limit = isGranted(permission) ? std::string() : sessionLimit(permission);
    return explanation(permission) + (limit.empty() ? limit : "\n" + limit);
}

std::string FirstRun::sessionLimit(Permission permission) const {
    switch (permission) {
        case Permission::screenRecording:
            return mediator_.permissions.screenCaptureLimit();
        case Permission::accessibility:
            return mediator_.permissions.accessibilityLimit();
        case Permission::filesAndFolders:
            return {};
    }
    return {};
}

}  // namespace ui
