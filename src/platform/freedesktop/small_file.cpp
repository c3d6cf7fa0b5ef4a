#include "platform/freedesktop/small_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

#include "platform/freedesktop/file_errors.h"
#include "platform/freedesktop/file_handle.h"

namespace platform::freedesktop {

base::Result<std::string> readSmallFile(const std::string& path) {
    const FileHandle file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file.isOpen()) {
        return readError(path, errno);
    }
    struct stat status {};
    if (::fstat(file.get(), &status) != 0) {
        return readError(path, errno);
    }
    if (!S_ISREG(status.st_mode) || status.st_size > static_cast<off_t>(smallFileLimit)) {
        return base::Error{base::ErrorKind::invalid,
                           "The file " + quotedName(path) + " can’t be a settings file."};
    }
    std::string text;
    char buffer[4096];
    // Read to the end and not to the size seen before: the file may grow meanwhile.
    while (text.size() <= smallFileLimit) {
        const ssize_t count = ::read(file.get(), buffer, sizeof buffer);
        if (count == 0) {
            return text;
        }
        if (count > 0) {
            text.append(buffer, static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            return readError(path, errno);
        }
    }
    return base::Error{base::ErrorKind::invalid, "The file " + quotedName(path) + " is too large."};
}

}  // namespace platform::freedesktop
