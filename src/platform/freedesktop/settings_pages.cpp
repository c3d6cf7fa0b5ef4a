#include "platform/freedesktop/settings_pages.h"

#include <array>
#include <string_view>

namespace platform::freedesktop {

namespace {

struct Row {
    const char* desktop;
    SettingsPage page;
    std::vector<ProgramCommand> commands;
};

/// Where a user of the desktop finds what keeps a program from the screen, from its keys and from
/// the Downloads folder.
const std::array<Row, 9>& table() {
    static const std::array<Row, 9> rows{{
        {"GNOME", SettingsPage::screen, {{"gnome-control-center", "applications"}}},
        {"GNOME", SettingsPage::keyboard, {{"gnome-control-center", "keyboard"}}},
        {"GNOME", SettingsPage::files, {{"gnome-control-center", "applications"}}},
        // Plasma 5 has both names of the program, and opens its first page for a page that it does
        // not know; Plasma 6 has the first name alone, and another name for the page.
        {"KDE",
         SettingsPage::screen,
         {{"systemsettings5", "kcm_flatpak"}, {"systemsettings", "kcm_app-permissions"}}},
        {"KDE",
         SettingsPage::keyboard,
         {{"systemsettings", "kcm_keys"}, {"systemsettings5", "kcm_keys"}}},
        {"KDE",
         SettingsPage::files,
         {{"systemsettings", "kcm_desktoppaths"}, {"systemsettings5", "kcm_desktoppaths"}}},
        {"XFCE", SettingsPage::screen, {{"xfce4-settings-manager"}}},
        {"XFCE", SettingsPage::keyboard, {{"xfce4-keyboard-settings"}, {"xfce4-settings-manager"}}},
        {"XFCE", SettingsPage::files, {{"xfce4-settings-manager"}}},
    }};
    return rows;
}

}  // namespace

SettingsPage settingsPageOf(const std::string& url) {
    constexpr std::string_view pane = "x-apple.systempreferences:com.apple.preference.security?";
    if (!url.starts_with(pane)) {
        return SettingsPage::unknown;
    }
    const std::string_view anchor = std::string_view(url).substr(pane.size());
    if (anchor == "Privacy_ScreenCapture") {
        return SettingsPage::screen;
    }
    if (anchor == "Privacy_Accessibility") {
        return SettingsPage::keyboard;
    }
    return anchor == "Privacy_FilesAndFolders" ? SettingsPage::files : SettingsPage::unknown;
}

std::vector<ProgramCommand> settingsPageCommands(SettingsPage page,
                                                 const std::vector<std::string>& desktops) {
    for (const std::string& desktop : desktops) {
        for (const Row& row : table()) {
            if (row.page == page && desktop == row.desktop) {
                return row.commands;
            }
        }
    }
    return {};
}

}  // namespace platform::freedesktop
