#include "platform/freedesktop/file_writing.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>

#include "platform/freedesktop/file_errors.h"
#include "platform/freedesktop/file_handle.h"

namespace platform::freedesktop {

namespace {

constexpr int pipePatienceMilliseconds = 1000;

/// 0, or the error number.
int waitUntilWritable(int descriptor) {
    pollfd entry{descriptor, POLLOUT, 0};
    for (;;) {
        const int ready = ::poll(&entry, 1, pipePatienceMilliseconds);
        if (ready > 0) {
            return 0;
        }
        if (ready == 0) {
            return EAGAIN;
        }
        if (errno != EINTR) {
            return errno;
        }
    }
}

/// 0, or the error number.
int writeAll(int descriptor, const char* bytes, std::size_t size) {
    while (size > 0) {
        const ssize_t count = ::write(descriptor, bytes, size);
        if (count >= 0) {
            bytes += count;
            size -= static_cast<std::size_t>(count);
        } else if (errno == EAGAIN) {
            if (const int errorNumber = waitUntilWritable(descriptor)) {
                return errorNumber;
            }
        } else if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

/// A file beside `path` whose name nobody else has; its name is put into `name`.
FileHandle createBeside(const std::string& path, mode_t mode, std::string& name) {
    constexpr int attempts = 100;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        timespec now{};
        clock_gettime(CLOCK_REALTIME, &now);
        name = parentOf(path) + "/.lumaframe-" + std::to_string(::getpid()) + "-" +
               std::to_string(now.tv_nsec + attempt);
        FileHandle file(
            ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
        if (file.isOpen() || errno != EEXIST) {
            return file;
        }
    }
    return FileHandle();
}

}  // namespace

base::Status writeInPlace(const std::string& path, std::span<const std::uint8_t> bytes) {
    if (!isWholePath(path)) {
        return writeError(path, EINVAL);
    }
    constexpr int flags = O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    FileHandle file(::open(path.c_str(), flags, 0666));
    if (!file.isOpen()) {
        return writeError(path, errno);
    }
    const auto* data = reinterpret_cast<const char*>(bytes.data());
    if (const int errorNumber = writeAll(file.get(), data, bytes.size())) {
        return writeError(path, errorNumber);
    }
    if (file.close() != 0) {
        return writeError(path, errno);
    }
    return base::Nothing{};
}

base::Status replaceFile(const std::string& path, std::string_view text, FileAccess access) {
    if (!isWholePath(path)) {
        return writeError(path, EINVAL);
    }
    std::string temporary;
    const mode_t mode = access == FileAccess::ownerOnly ? 0600 : 0666;
    FileHandle file = createBeside(path, mode, temporary);
    if (!file.isOpen()) {
        return writeError(path, errno);
    }
    int errorNumber = writeAll(file.get(), text.data(), text.size());
    if (file.close() != 0 && errorNumber == 0) {
        errorNumber = errno;
    }
    if (errorNumber == 0 && ::rename(temporary.c_str(), path.c_str()) != 0) {
        errorNumber = errno;
    }
    if (errorNumber != 0) {
        ::unlink(temporary.c_str());
        return writeError(path, errorNumber);
    }
    return base::Nothing{};
}

}  // namespace platform::freedesktop
