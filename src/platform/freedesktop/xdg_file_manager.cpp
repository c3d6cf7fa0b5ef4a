#include "platform/freedesktop/xdg_file_manager.h"

#include <sys/stat.h>
#include <unistd.h>

#include <utility>

#include "platform/freedesktop/file_errors.h"
#include "platform/freedesktop/file_writing.h"

namespace platform::freedesktop {

XdgFileManager::XdgFileManager(XdgDirectories directories) : directories_(std::move(directories)) {}

std::vector<std::string> XdgFileManager::downloadsDirectories() const {
    const std::string downloads = downloadsDirectory(directories_);
    return downloads.empty() ? std::vector<std::string>() : std::vector{downloads};
}

bool XdgFileManager::isReadableFolder(const std::string& path) const {
    struct stat status {};
    return isWholePath(path) && ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
           ::access(path.c_str(), R_OK) == 0;
}

base::Status XdgFileManager::write(const std::string& path, std::span<const std::uint8_t> bytes) {
    return writeInPlace(path, bytes);
}

base::Status XdgFileManager::writeTextAtomically(const std::string& path, std::string_view text) {
    return replaceFile(path, text, FileAccess::asUserPrefers);
}

}  // namespace platform::freedesktop
