#include "platform/freedesktop/sound_theme.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

#include "platform/freedesktop/key_file.h"
#include "platform/freedesktop/small_file.h"

namespace platform::freedesktop {

namespace {

/// More themes than any chain of inheritance has, so that one that inherits itself ends too.
constexpr std::size_t mostThemes = 16;

bool isReadableFile(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           ::access(path.c_str(), R_OK) == 0;
}

/// A name that stays within the directory it is looked up in.
bool isPlainName(const std::string& name) {
    return !name.empty() && !name.starts_with('.') && name.find('/') == std::string::npos &&
           name.find('\0') == std::string::npos;
}

std::optional<std::string> fileIn(const std::string& directory, const std::string& name) {
    for (const char* extension : {".oga", ".ogg", ".wav"}) {
        std::string path = directory + "/" + name + extension;
        if (isReadableFile(path)) {
            return path;
        }
    }
    return std::nullopt;
}

std::vector<std::string> soundDirectories(const XdgDirectories& directories) {
    std::vector<std::string> list;
    if (!directories.dataHome.empty()) {
        list.push_back(directories.dataHome + "/sounds");
    }
    for (const std::string& directory : directories.dataDirectories) {
        list.push_back(directory + "/sounds");
    }
    return list;
}

/// The theme's own description: of its parts in several directories the first that has one.
KeyFile indexOf(const std::vector<std::string>& bases, const std::string& theme) {
    for (const std::string& base : bases) {
        if (const auto text = readSmallFile(base + "/" + theme + "/index.theme")) {
            return KeyFile::parse(text.value());
        }
    }
    return {};
}

/// The theme's directories for stereo output; those for any output come after.
std::vector<std::string> stereoDirectories(const KeyFile& index) {
    std::vector<std::string> stereo;
    std::vector<std::string> any;
    for (const std::string& directory : index.list("Sound Theme", "Directories")) {
        const std::string profile = index.value(directory, "OutputProfile").value_or("");
        if (!isPlainName(directory)) {
            continue;
        }
        if (profile == "stereo") {
            stereo.push_back(directory);
        } else if (profile.empty()) {
            any.push_back(directory);
        }
    }
    stereo.insert(stereo.end(), any.begin(), any.end());
    return stereo.empty() ? std::vector<std::string>{"stereo"} : stereo;
}

}  // namespace

std::optional<std::string> findSound(const XdgDirectories& directories, const std::string& name) {
    if (!isPlainName(name)) {
        return std::nullopt;
    }
    const auto bases = soundDirectories(directories);
    std::vector<std::string> themes{"freedesktop"};
    for (std::size_t position = 0; position < themes.size(); ++position) {
        const KeyFile index = indexOf(bases, themes[position]);
        for (const std::string& directory : stereoDirectories(index)) {
            for (const std::string& base : bases) {
                if (auto path = fileIn(base + "/" + themes[position] + "/" + directory, name)) {
                    return path;
                }
            }
        }
        for (const std::string& parent : index.list("Sound Theme", "Inherits")) {
            if (isPlainName(parent) && themes.size() < mostThemes &&
                std::find(themes.begin(), themes.end(), parent) == themes.end()) {
                themes.push_back(parent);
            }
        }
    }
    for (const std::string& base : bases) {
        if (auto path = fileIn(base, name)) {
            return path;
        }
    }
    return std::nullopt;
}

}  // namespace platform::freedesktop
