#include "desktop/disk_watch.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <stdexcept>
#include <string_view>

namespace desktop {
namespace {

namespace fs = std::filesystem;

constexpr std::uint32_t changes = IN_CREATE | IN_MOVED_TO | IN_CLOSE_WRITE;

/// As the kernel calls a file without a name where it has to call it something.
bool isNameless(std::string_view name) {
    return name.starts_with('#') && name.find_first_not_of("0123456789", 1) == name.npos;
}

}  // namespace

DiskWatch::DiskWatch(const std::vector<fs::path>& roots)
    : roots_(roots),
      events_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)),
      end_(::eventfd(0, EFD_CLOEXEC)) {
    if (events_ < 0 || end_ < 0) {
        throw std::runtime_error("The system has no watch over directories left.");
    }
    for (const fs::path& root : roots_) {
        watchTree(root, Found::before);
    }
    thread_ = std::thread([this] { follow(); });
}

DiskWatch::~DiskWatch() {
    ::eventfd_write(end_, 1);
    thread_.join();
    ::close(events_);
    ::close(end_);
}

DiskWatch::Paths DiskWatch::touched() {
    const std::lock_guard lock(mutex_);
    readEvents();
    if (isOverflown_) {
        throw std::runtime_error("Too much happened on the disk at once.");
    }
    for (const fs::path& root : roots_) {
        watchTree(root, Found::since);
    }
    return touched_;
}

void DiskWatch::watchTree(const fs::path& directory, Found found) {
    const int watch =
        ::inotify_add_watch(events_, directory.c_str(), changes | IN_ONLYDIR | IN_DONT_FOLLOW);
    if (watch < 0 && errno == ENOSPC) {
        throw std::runtime_error("The system has no watch over directories left.");
    }
    directories_[watch] = directory;
    std::error_code gone;
    for (const auto& entry : fs::directory_iterator(directory, gone)) {
        if (found == Found::before) {
            before_.insert(entry.path());
        } else if (!before_.contains(entry.path())) {
            touched_.insert(entry.path());
        }
        if (entry.is_directory(gone) && !entry.is_symlink(gone)) {
            watchTree(entry.path(), found);
        }
    }
}

void DiskWatch::readEvents() {
    alignas(inotify_event) std::array<char, 65536> buffer;
    for (;;) {
        const ssize_t size = ::read(events_, buffer.data(), buffer.size());
        if (size <= 0) {
            return;
        }
        for (ssize_t at = 0; at < size;) {
            const auto* const event = reinterpret_cast<const inotify_event*>(buffer.data() + at);
            at += static_cast<ssize_t>(sizeof *event + event->len);
            isOverflown_ = isOverflown_ || (event->mask & IN_Q_OVERFLOW) != 0;
            const auto directory = directories_.find(event->wd);
            if (directory == directories_.end() || event->len == 0 || isNameless(event->name)) {
                continue;
            }
            const fs::path path = directory->second / event->name;
            touched_.insert(path);
            if ((event->mask & IN_ISDIR) != 0) {
                watchTree(path, Found::since);
            }
        }
    }
}

void DiskWatch::follow() {
    std::array<pollfd, 2> waiting{pollfd{events_, POLLIN, 0}, pollfd{end_, POLLIN, 0}};
    while (::poll(waiting.data(), waiting.size(), -1) >= 0 || errno == EINTR) {
        if (waiting[1].revents != 0) {
            return;
        }
        const std::lock_guard lock(mutex_);
        readEvents();
    }
}

}  // namespace desktop
