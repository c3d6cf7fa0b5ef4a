#include "platform/freedesktop/directory_watch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <utility>

#include "platform/freedesktop/file_errors.h"

namespace platform::freedesktop {

namespace {

// Not IN_MODIFY: a file that is still being written is nothing to read yet. IN_ATTRIB: a file may
// have become readable.
constexpr std::uint32_t contentEvents = IN_CLOSE_WRITE | IN_ATTRIB | IN_MOVED_TO | IN_MOVED_FROM |
                                        IN_DELETE | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
constexpr std::uint32_t arrivalEvents = IN_CREATE | IN_MOVED_TO | IN_ONLYDIR;

}  // namespace

DirectoryWatch::DirectoryWatch(std::string directory, const WatchFileDescriptor& watch,
                               std::function<void()> onChange)
    : directory_(std::move(directory)),
      onChange_(std::move(onChange)),
      events_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    if (events_.isOpen()) {
        follow();
        token_ = watch(events_.get(), [this] { readEvents(); });
    }
}

void DirectoryWatch::follow() {
    int next = ::inotify_add_watch(events_.get(), directory_.c_str(), contentEvents);
    if (next < 0) {
        next = ::inotify_add_watch(events_.get(), parentOf(directory_).c_str(), arrivalEvents);
    }
    if (watch_ >= 0 && watch_ != next) {
        ::inotify_rm_watch(events_.get(), watch_);
    }
    watch_ = next;
}

void DirectoryWatch::readEvents() {
    alignas(inotify_event) std::array<char, 4096> buffer;
    // Only that something happened counts; what it was is seen by looking.
    while (::read(events_.get(), buffer.data(), buffer.size()) > 0) {
    }
    follow();
    onChange_();
}

}  // namespace platform::freedesktop
