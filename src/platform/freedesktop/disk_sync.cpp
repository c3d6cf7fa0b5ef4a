#include "platform/freedesktop/disk_sync.h"

#include <fcntl.h>
#include <unistd.h>

#include <system_error>
#include <thread>

#include "platform/freedesktop/file_errors.h"
#include "platform/freedesktop/file_handle.h"

namespace platform::freedesktop {

namespace {

void syncPath(const std::string& path, int flags) {
    const FileHandle file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | flags));
    if (file.isOpen()) {
        ::fsync(file.get());
    }
}

}  // namespace

void syncInBackground(const std::string& path) {
    try {
        std::thread([path] {
            syncPath(path, 0);
            syncPath(parentOf(path), O_DIRECTORY);
        }).detach();
    } catch (const std::system_error&) {
        // No thread to be had: the system writes the file back by itself within seconds.
    }
}

}  // namespace platform::freedesktop
