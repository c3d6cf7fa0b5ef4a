#include "latency/file_watch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <system_error>

#include "latency/monotonic.h"

namespace latency {

FileWatch::FileWatch(const std::filesystem::path& folder)
    : folder_(folder), descriptor_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    if (::inotify_add_watch(descriptor_, folder.c_str(), IN_CLOSE_WRITE | IN_MOVED_TO) < 0) {
        throw std::system_error(errno, std::generic_category(), "watching " + folder.string());
    }
}

FileWatch::~FileWatch() {
    ::close(descriptor_);
}

void FileWatch::drain() {
    std::array<char, 8192> buffer{};
    ssize_t count = 0;
    while ((count = ::read(descriptor_, buffer.data(), buffer.size())) > 0) {
        const double at = now();
        for (ssize_t offset = 0; offset < count;) {
            inotify_event event{};
            std::memcpy(&event, buffer.data() + offset, sizeof event);
            const char* name = buffer.data() + offset + sizeof event;
            offset += static_cast<ssize_t>(sizeof event + event.len);
            if (event.len > 0) {
                name_ = name;
                closedAt_ = at;
            }
        }
    }
}

void FileWatch::restart() {
    drain();
    closedAt_.reset();
    name_.clear();
}

std::uintmax_t FileWatch::size() const {
    std::error_code failure;
    const auto bytes = std::filesystem::file_size(folder_ / name_, failure);
    return failure ? 0 : bytes;
}

void FileWatch::clean() {
    for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
        std::filesystem::remove(entry.path());
    }
    restart();
}

}  // namespace latency
