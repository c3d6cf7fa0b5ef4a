#include "platform/resources.h"

#include <filesystem>
#include <string_view>
#include <system_error>

namespace platform {

namespace {

constexpr const char* textHelperName = "lumaframe-text-helper";
constexpr const char* soundHelperName = "lumaframe-sound-helper";
constexpr const char* videoHelperName = "lumaframe-video-helper";

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

/// Desktops take a desktop entry for the program itself: in a dock, among favourites, in autostart.
std::string bundleLocation(const std::filesystem::path& prefix) {
    const auto entry = prefix / "share/applications/app.lumaframe.Lumaframe.desktop";
    std::error_code error;
    if (!prefix.empty() && std::filesystem::is_regular_file(entry, error)) {
        return entry;
    }
    return runningProgram();
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
    const bool isInstalled = !prefix.empty();
    const std::string source = LUMAFRAME_SOURCE_RESOURCES;
    Resources resources;
    resources.sounds =
        isInstalled ? (prefix / "share/lumaframe/sounds").string() : source + "/sounds";
    resources.icons =
        isInstalled ? (prefix / "share/icons/hicolor").string() : source + "/icons/hicolor";
    resources.videos = isInstalled ? (prefix / "share/lumaframe").string() : source;
    const auto helpers = isInstalled ? prefix / "libexec/lumaframe" : binaryDirectory();
    resources.textHelper = helpers / textHelperName;
    resources.soundHelper = helpers / soundHelperName;
    resources.videoHelper = helpers / videoHelperName;
    resources.permissionsHelp =
        (isInstalled ? (prefix / "share/lumaframe").string() : source) + "/help/permissions.html";
    resources.bundle = bundleLocation(prefix);
    resources.icon = resources.icons + "/512x512/apps/app.lumaframe.Lumaframe.png";
    return resources;
}

}  // namespace platform
