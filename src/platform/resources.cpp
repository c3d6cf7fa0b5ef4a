#include "platform/resources.h"

#include <filesystem>
#include <system_error>

namespace platform {

namespace {

/// The `share` directory of the prefix that the binary is installed in, empty when it is not.
std::string installedShare() {
    std::error_code error;
    const auto executable = std::filesystem::read_symlink("/proc/self/exe", error);
    const auto share = executable.parent_path().parent_path() / "share";
    const bool isInstalled = !error && std::filesystem::is_directory(share / "lumaframe", error);
    return isInstalled ? share.string() : std::string();
}

}  // namespace

Resources Resources::locate() {
    const std::string share = installedShare();
    if (!share.empty()) {
        return {.sounds = share + "/lumaframe/sounds", .icons = share + "/icons/hicolor"};
    }
    const std::string source = LUMAFRAME_SOURCE_RESOURCES;
    return {.sounds = source + "/sounds", .icons = source + "/icons/hicolor"};
}

}  // namespace platform
