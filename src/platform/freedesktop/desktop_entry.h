#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform::freedesktop {

/// What a `.desktop` file says about an application's name and windows.
struct DesktopEntry {
    enum class Visibility {
        /// The file stands for an application.
        present,
        /// The user or the system has deleted the application in this and all later directories.
        deleted,
    };
    Visibility visibility = Visibility::present;
    /// In the language asked for; one line.
    std::string name;
    /// The WM_CLASS of its windows, empty when the file does not say.
    std::string startupWindowClass;
    /// The file name of the program it starts, without directories; empty when the line starts a
    /// helper that starts the program.
    std::string executable;
};

/// The entry in the text of a file; none when it is no application with a name.
///
/// `nameKeys` are the keys to look for, best first (see `nameKeysOf`). Source of the rules: Desktop
/// Entry Specification 1.5.
std::optional<DesktopEntry> parseDesktopEntry(std::string_view text,
                                              const std::vector<std::string>& nameKeys);

/// "Name[lang_COUNTRY@MODIFIER]" and so on down to "Name" for a locale of the form
/// lang_COUNTRY.ENCODING@MODIFIER.
std::vector<std::string> nameKeysOf(std::string_view locale);

/// The locale of messages: $LC_ALL, else $LC_MESSAGES, else $LANG, empty values passed over.
std::string messageLocale();

}  // namespace platform::freedesktop
