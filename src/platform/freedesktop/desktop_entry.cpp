#include "platform/freedesktop/desktop_entry.h"

#include <algorithm>
#include <array>

#include "base/text.h"
#include "platform/environment.h"
#include "platform/freedesktop/key_file.h"

namespace platform::freedesktop {

namespace {

constexpr const char* mainGroup = "Desktop Entry";

/// The value with its escapes (\s \n \t \r \\) undone; whatever would break the line is a blank.
std::string oneLine(std::string_view value) {
    std::string text;
    for (std::size_t index = 0; index < value.size(); ++index) {
        if (value[index] == '\\' && index + 1 < value.size()) {
            ++index;
            text.push_back(value[index] == '\\' ? '\\' : ' ');
        } else {
            text.push_back(base::isControl(value[index]) ? ' ' : value[index]);
        }
    }
    return text;
}

/// The first word of a command line, its quotes taken off.
std::string_view firstWord(std::string_view command) {
    if (command.starts_with('"')) {
        command.remove_prefix(1);
        return command.substr(0, command.find('"'));
    }
    return command.substr(0, command.find_first_of(" \t"));
}

std::string executableOf(std::string_view command) {
    std::string_view program = firstWord(command);
    program.remove_prefix(program.rfind('/') + 1);
    constexpr std::array<std::string_view, 8> helpers{"env",     "sh",   "bash",   "flatpak",
                                                      "python3", "snap", "pkexec", "gapplication"};
    return std::ranges::find(helpers, program) == helpers.end() ? std::string(program)
                                                                : std::string();
}

std::string firstSet(std::initializer_list<const char*> variables) {
    for (const char* variable : variables) {
        if (auto value = environmentValue(variable); !value.empty()) {
            return value;
        }
    }
    return {};
}

}  // namespace

std::optional<DesktopEntry> parseDesktopEntry(std::string_view text,
                                              const std::vector<std::string>& nameKeys) {
    const KeyFile file = KeyFile::parse(text);
    const auto value = [&](const std::string& key) {
        return file.value(mainGroup, key).value_or(std::string());
    };
    DesktopEntry entry;
    if (value("Hidden") == "true") {
        entry.visibility = DesktopEntry::Visibility::deleted;
        return entry;
    }
    for (const std::string& key : nameKeys) {
        entry.name = oneLine(value(key));
        if (!entry.name.empty()) {
            break;
        }
    }
    if (value("Type") != "Application" || entry.name.empty()) {
        return std::nullopt;
    }
    entry.startupWindowClass = oneLine(value("StartupWMClass"));
    entry.executable = executableOf(value("Exec"));
    return entry;
}

std::vector<std::string> nameKeysOf(std::string_view locale) {
    const auto modifierAt = std::min(locale.find('@'), locale.size());
    const std::string modifier(locale.substr(modifierAt));
    locale = locale.substr(0, modifierAt);
    locale = locale.substr(0, locale.find('.'));
    const std::string withCountry(locale);
    const std::string language(locale.substr(0, locale.find('_')));
    std::vector<std::string> keys;
    const bool isUntranslated = language.empty() || language == "C" || language == "POSIX";
    if (!isUntranslated) {
        for (const std::string& suffix :
             {withCountry + modifier, withCountry, language + modifier, language}) {
            const std::string key = "Name[" + suffix + "]";
            if (std::ranges::find(keys, key) == keys.end()) {
                keys.push_back(key);
            }
        }
    }
    keys.emplace_back("Name");
    return keys;
}

std::string messageLocale() {
    return firstSet({"LC_ALL", "LC_MESSAGES", "LANG"});
}

}  // namespace platform::freedesktop
