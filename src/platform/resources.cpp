#include "platform/resources.h"

#include <filesystem>
#include <string_view>
#include <system_error>

namespace platform {

namespace {

constexpr const char* textHelperName = "lumaframe-text-helper";

/// Where this program's binary is.
std::filesystem::path binaryDirectory() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
}

/// The prefix that the binary is installed in, empty when it is not.
std::filesystem::path installationPrefix() {
    std::error_code error;
    const auto prefix = binaryDirectory().parent_path();
    const bool isInstalled = std::filesystem::is_directory(prefix / "share" / "lumaframe", error);
    return isInstalled ? prefix : std::filesystem::path();
}

}  // namespace

std::string runningProgram() {
    constexpr std::string_view replacedMark = " (deleted)";
    std::error_code error;
    const std::string path = std::filesystem::read_symlink("/proc/self/exe", error);
    const bool isReplaced = path.ends_with(replacedMark) && !std::filesystem::exists(path, error);
    return isReplaced ? path.substr(0, path.size() - replacedMark.size()) : path;
}

Resources Resources::locate() {
    const std::filesystem::path prefix = installationPrefix();
    if (!prefix.empty()) {
        return {.sounds = prefix / "share/lumaframe/sounds",
                .icons = prefix / "share/icons/hicolor",
                .textHelper = prefix / "libexec/lumaframe" / textHelperName};
    }
    const std::string source = LUMAFRAME_SOURCE_RESOURCES;
    return {.sounds = source + "/sounds",
            .icons = source + "/icons/hicolor",
            .textHelper = binaryDirectory() / textHelperName};
}

}  // namespace platform
