#include "platform/freedesktop/xdg_directories.h"

#include <sys/stat.h>

#include <optional>
#include <string_view>

#include "base/text.h"
#include "platform/environment.h"
#include "platform/freedesktop/small_file.h"

namespace platform::freedesktop {

namespace {

bool isAbsolute(std::string_view path) {
    return path.starts_with('/');
}

bool isDirectory(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

/// `/home/user/` and `/home/user` are one directory; only the root keeps its slash.
std::string withoutTrailingSlashes(std::string path) {
    while (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
    return path;
}

std::string absoluteOr(const char* variable, const std::string& home, const char* inHome) {
    const std::string value = environmentValue(variable);
    if (isAbsolute(value)) {
        return withoutTrailingSlashes(value);
    }
    return home.empty() ? std::string() : home + inHome;
}

/// The text between the double quotes at the start, with backslash escapes undone; none when the
/// quotes do not close or something other than a comment follows.
std::optional<std::string> unquoted(std::string_view text) {
    if (!text.starts_with('"')) {
        return std::nullopt;
    }
    std::string value;
    for (std::size_t index = 1; index < text.size(); ++index) {
        if (text[index] == '"') {
            const auto rest = base::withoutOuterBlanks(text.substr(index + 1));
            return rest.empty() || rest.starts_with('#') ? std::optional(value) : std::nullopt;
        }
        if (text[index] == '\\' && index + 1 < text.size()) {
            ++index;
        }
        value.push_back(text[index]);
    }
    return std::nullopt;
}

std::string expandedPath(const std::string& value, const std::string& home) {
    constexpr std::string_view homeVariable = "$HOME";
    if (isAbsolute(value)) {
        return withoutTrailingSlashes(value);
    }
    if (value == homeVariable || value.starts_with("$HOME/")) {
        return home.empty() ? std::string()
                            : withoutTrailingSlashes(home + value.substr(homeVariable.size()));
    }
    return {};
}

}  // namespace

std::vector<std::string> absolutePathsOf(const std::string& list) {
    std::vector<std::string> paths;
    for (std::size_t begin = 0; begin <= list.size();) {
        const auto end = std::min(list.find(':', begin), list.size());
        const std::string path = list.substr(begin, end - begin);
        if (isAbsolute(path)) {
            paths.push_back(withoutTrailingSlashes(path));
        }
        begin = end + 1;
    }
    return paths;
}

XdgDirectories XdgDirectories::fromEnvironment() {
    XdgDirectories directories;
    const std::string home = environmentValue("HOME");
    if (isAbsolute(home) && isDirectory(home)) {
        directories.home = withoutTrailingSlashes(home);
    }
    directories.configHome = absoluteOr("XDG_CONFIG_HOME", directories.home, "/.config");
    directories.dataHome = absoluteOr("XDG_DATA_HOME", directories.home, "/.local/share");
    directories.dataDirectories = absolutePathsOf(environmentValue("XDG_DATA_DIRS"));
    if (directories.dataDirectories.empty()) {
        directories.dataDirectories = {"/usr/local/share", "/usr/share"};
    }
    directories.configDirectories = absolutePathsOf(environmentValue("XDG_CONFIG_DIRS"));
    if (directories.configDirectories.empty()) {
        directories.configDirectories = {"/etc/xdg"};
    }
    return directories;
}

std::string parseDownloadsDirectory(const std::string& userDirsText, const std::string& home) {
    std::string found;
    for (std::size_t begin = 0; begin < userDirsText.size();) {
        const auto end = std::min(userDirsText.find('\n', begin), userDirsText.size());
        const auto line =
            base::withoutOuterBlanks(std::string_view(userDirsText).substr(begin, end - begin));
        begin = end + 1;
        const auto equals = line.find('=');
        if (equals == std::string_view::npos ||
            base::withoutOuterBlanks(line.substr(0, equals)) != "XDG_DOWNLOAD_DIR") {
            continue;
        }
        // The file is read by shells too, where the last assignment counts.
        if (const auto value = unquoted(base::withoutOuterBlanks(line.substr(equals + 1)))) {
            found = expandedPath(*value, home);
        }
    }
    return found;
}

std::string downloadsDirectory(const XdgDirectories& directories) {
    if (directories.home.empty()) {
        return {};
    }
    const auto text = readSmallFile(directories.configHome + "/user-dirs.dirs");
    const std::string named =
        text ? parseDownloadsDirectory(text.value(), directories.home) : std::string();
    return named.empty() ? directories.home + "/Downloads" : named;
}

}  // namespace platform::freedesktop
