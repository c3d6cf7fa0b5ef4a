#include "platform/freedesktop/session_permissions.h"

#include <utility>

namespace platform::freedesktop {

SessionPermissions::SessionPermissions(Probes probes, Pages pages)
    : probes_(std::move(probes)), pages_(std::move(pages)) {}

bool SessionPermissions::canCaptureScreen() const {
    return !probes_.isNested() && probes_.canReadScreen();
}

bool SessionPermissions::isAccessibilityTrusted() const {
    return !probes_.isNested() && probes_.canGrabKeys();
}

std::string SessionPermissions::screenCaptureLimit() const {
    if (probes_.isNested()) {
        return "In a Wayland session it reaches only X11 windows: log in to an X11 session.";
    }
    if (!probes_.canReadScreen()) {
        return "The X server takes Lumaframe for an untrusted program, as after ssh -X: use ssh "
               "-Y.";
    }
    return {};
}

std::string SessionPermissions::accessibilityLimit() const {
    std::string limit = screenCaptureLimit();
    if (limit.empty() && !probes_.canGrabKeys()) {
        limit = "Another program holds every key: end its hold on the keyboard.";
    }
    return limit;
}

bool SessionPermissions::canSettingsChange(SettingsPage page) const {
    switch (page) {
        case SettingsPage::screen:
            return screenCaptureLimit().empty();
        case SettingsPage::keyboard:
            return accessibilityLimit().empty();
        case SettingsPage::files:
            return true;
        case SettingsPage::unknown:
            return false;
    }
    return false;
}

void SessionPermissions::openSettingsPage(const std::string& url) {
    const SettingsPage page = settingsPageOf(url);
    if (page == SettingsPage::unknown) {
        return;
    }
    std::vector<ProgramCommand> commands;
    if (canSettingsChange(page)) {
        commands = settingsPageCommands(page, pages_.currentDesktops);
    }
    commands.push_back({"xdg-open", pages_.helpPage});
    commands.push_back({"gio", "open", pages_.helpPage});
    pages_.starter.startFirst(std::move(commands),
                              [pages = pages_] { pages.showHelpPage(pages.helpPage); });
}

}  // namespace platform::freedesktop
