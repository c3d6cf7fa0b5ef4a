#include "platform/freedesktop/autostart_entry.h"

#include <unistd.h>

#include <algorithm>

#include "platform/environment.h"
#include "platform/freedesktop/exec_line.h"
#include "platform/freedesktop/key_file.h"

namespace platform::freedesktop {

namespace {

constexpr const char* mainGroup = "Desktop Entry";

constexpr std::string_view head =
    "[Desktop Entry]\n"
    "Type=Application\n"
    "Name=Lumaframe\n";

bool isSwitchedOff(const KeyFile& file) {
    const auto is = [&](const char* key, std::string_view word, std::string_view number) {
        const auto value = file.value(mainGroup, key);
        return value && (*value == word || *value == number);
    };
    return is("Hidden", "true", "1") || is("X-GNOME-Autostart-enabled", "false", "0") ||
           is("X-MATE-Autostart-enabled", "false", "0");
}

bool isForDesktop(const KeyFile& file, const std::vector<std::string>& currentDesktops) {
    const auto names = [&](const char* key) {
        const auto list = file.list(mainGroup, key);
        return std::ranges::any_of(currentDesktops, [&](const std::string& desktop) {
            return std::ranges::find(list, desktop) != list.end();
        });
    };
    return (!file.value(mainGroup, "OnlyShowIn") || names("OnlyShowIn")) && !names("NotShowIn");
}

bool isExecutable(const std::string& path) {
    return ::access(path.c_str(), X_OK) == 0;
}

/// Whether a session would find `program`, a path or a name.
bool isThere(const std::string& program) {
    if (program.find('/') != std::string::npos) {
        return isExecutable(program);
    }
    const std::string path = environmentValue("PATH");
    for (std::size_t begin = 0; begin <= path.size();) {
        const auto end = std::min(path.find(':', begin), path.size());
        if (isExecutable(path.substr(begin, end - begin) + "/" + program)) {
            return true;
        }
        begin = end + 1;
    }
    return false;
}

}  // namespace

AutostartState stateOfAutostartEntry(std::string_view text,
                                     const std::vector<std::string>& currentDesktops) {
    const KeyFile file = KeyFile::parse(text);
    if (isSwitchedOff(file)) {
        return AutostartState::switchedOff;
    }
    const std::string program = programOfExecLine(file.value(mainGroup, "Exec").value_or(""));
    if (file.value(mainGroup, "Type") != "Application" || program.empty()) {
        return AutostartState::broken;
    }
    if (!isForDesktop(file, currentDesktops)) {
        return AutostartState::switchedOff;
    }
    const auto tried = file.value(mainGroup, "TryExec");
    const bool isComplete = isThere(program) && (!tried || isThere(unescapedString(*tried)));
    return isComplete ? AutostartState::started : AutostartState::programMissing;
}

std::string autostartEntryFor(std::string_view program) {
    return std::string(head) +
           "Comment=Advanced screenshot capture and instant text recognition\n"
           "Icon=app.lumaframe.Lumaframe\n"
           "TryExec=" +
           escapedString(program) + "\nExec=" + execLineFor(program) +
           "\nTerminal=false\n"
           "StartupNotify=false\n"
           "X-GNOME-Autostart-enabled=true\n";
}

std::string hidingAutostartEntry() {
    return std::string(head) + "Exec=lumaframe\nHidden=true\n";
}

}  // namespace platform::freedesktop
