#include "latency/line_watch.h"

#include <fcntl.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <system_error>

#include "latency/monotonic.h"

namespace latency {

LineWatch::LineWatch(const std::filesystem::path& file)
    : watch_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)),
      file_(::open(file.c_str(), O_RDONLY | O_CLOEXEC)) {
    if (::inotify_add_watch(watch_, file.c_str(), IN_MODIFY) < 0 || file_ < 0) {
        throw std::system_error(errno, std::generic_category(), "reading " + file.string());
    }
}

LineWatch::~LineWatch() {
    ::close(watch_);
    ::close(file_);
}

void LineWatch::drain() {
    std::array<char, 4096> buffer{};
    while (::read(watch_, buffer.data(), buffer.size()) > 0) {
    }
    ssize_t count = 0;
    while ((count = ::read(file_, buffer.data(), buffer.size())) > 0) {
        rest_.append(buffer.data(), static_cast<std::size_t>(count));
    }
    const double at = now();
    for (auto end = rest_.find('\n'); end != std::string::npos; end = rest_.find('\n')) {
        lines_.push_back({at, rest_.substr(0, end)});
        rest_.erase(0, end + 1);
    }
}

void LineWatch::restart() {
    drain();
    lines_.clear();
}

std::optional<double> LineWatch::lineAt(const std::string& prefix) const {
    const auto found = std::find_if(lines_.begin(), lines_.end(), [&](const Line& line) {
        return line.text.starts_with(prefix);
    });
    return found == lines_.end() ? std::nullopt : std::optional(found->at);
}

}  // namespace latency
