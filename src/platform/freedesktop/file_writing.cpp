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

/// Calls `make` with names beside `path` until one is free; gives that one, or "" with the reason
/// in errno.
template <typename Make>
std::string freeNameBeside(const std::string& path, Make make) {
    constexpr int attempts = 100;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        timespec now{};
        clock_gettime(CLOCK_REALTIME, &now);
        const std::string name = parentOf(path) + "/.lumaframe-" + std::to_string(::getpid()) +
                                 "-" + std::to_string(now.tv_nsec + attempt);
        if (make(name)) {
            return name;
        }
        if (errno != EEXIST) {
            break;
        }
    }
    return {};
}

/// The new contents of a file, on their way to its place. Has no name for as long as the file
/// system allows it, so that a process that is killed leaves nothing behind.
class Draft {
  public:
    Draft(const std::string& path, mode_t mode)
        : path_(path),
          file_(::open(parentOf(path).c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, mode)) {
        if (!file_.isOpen()) {
            name_ = freeNameBeside(path, [&](const std::string& name) {
                file_ = FileHandle(::open(
                    name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
                return file_.isOpen();
            });
        }
    }
    ~Draft() {
        if (!name_.empty()) {
            ::unlink(name_.c_str());
        }
    }
    Draft(const Draft&) = delete;
    Draft& operator=(const Draft&) = delete;

    [[nodiscard]] bool isOpen() const { return file_.isOpen(); }
    /// 0, or the error number.
    int write(std::string_view text) { return writeAll(file_.get(), text.data(), text.size()); }
    /// Puts it in the place of the file. 0, or the error number.
    int publish() {
        if (name_.empty()) {
            // The kernel's own name of the descriptor: naming it directly takes a privilege.
            const std::string descriptor = "/proc/self/fd/" + std::to_string(file_.get());
            name_ = freeNameBeside(path_, [&](const std::string& name) {
                return ::linkat(AT_FDCWD, descriptor.c_str(), AT_FDCWD, name.c_str(),
                                AT_SYMLINK_FOLLOW) == 0;
            });
        }
        if (name_.empty() || file_.close() != 0 || ::rename(name_.c_str(), path_.c_str()) != 0) {
            return errno;
        }
        name_.clear();
        return 0;
    }

  private:
    const std::string& path_;
    FileHandle file_;
    std::string name_;
};

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
    Draft draft(path, access == FileAccess::ownerOnly ? 0600 : 0666);
    if (!draft.isOpen()) {
        return writeError(path, errno);
    }
    int errorNumber = draft.write(text);
    if (errorNumber == 0) {
        errorNumber = draft.publish();
    }
    if (errorNumber != 0) {
        return writeError(path, errorNumber);
    }
    return base::Nothing{};
}

}  // namespace platform::freedesktop
