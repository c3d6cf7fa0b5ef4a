#include "platform/freedesktop/make_directories.h"

#include <sys/stat.h>

#include <cerrno>

#include "platform/freedesktop/file_errors.h"

namespace platform::freedesktop {

base::Status makeDirectories(const std::string& path) {
    if (::mkdir(path.c_str(), 0700) == 0 || errno == EEXIST) {
        return base::Nothing{};
    }
    if (errno != ENOENT || path == "/" || path == ".") {
        return writeError(path, errno);
    }
    if (const auto status = makeDirectories(parentOf(path)); !status) {
        return status;
    }
    if (::mkdir(path.c_str(), 0700) != 0 && errno != EEXIST) {
        return writeError(path, errno);
    }
    return base::Nothing{};
}

}  // namespace platform::freedesktop
