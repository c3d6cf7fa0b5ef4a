#include "soak/log_follower.h"

#include <stdexcept>
#include <utility>

#include "desktop/wait.h"

namespace soak {
namespace {

/// Enough to see what led to a failure.
constexpr std::size_t keptLines = 60;

}  // namespace

LogFollower::LogFollower(const std::filesystem::path& file, const std::vector<std::string>& counted)
    : stream_(file) {
    for (const std::string& prefix : counted) {
        counts_[prefix] = 0;
    }
    if (!stream_) {
        throw std::runtime_error("The log " + file.string() + " cannot be read.");
    }
}

std::string LogFollower::waitFor(const std::string& prefix) {
    std::string rest;
    const bool came = desktop::waitUntil([&] {
        readNew();
        while (!unread_.empty()) {
            const std::string line = unread_.front();
            unread_.pop_front();
            if (line.starts_with(prefix)) {
                rest = line.substr(prefix.size());
                return true;
            }
        }
        return false;
    });
    if (!came) {
        std::string message = "No line \"" + prefix + "\" came. The latest ones are:\n";
        for (const std::string& line : latest_) {
            message += "    " + line + "\n";
        }
        throw std::runtime_error(message);
    }
    return rest;
}

void LogFollower::skip() {
    readNew();
    unread_.clear();
}

std::size_t LogFollower::countOf(const std::string& prefix) {
    readNew();
    return counts_.at(prefix);
}

void LogFollower::readNew() {
    for (std::string part; std::getline(stream_, part);) {
        incomplete_ += part;
        if (stream_.eof()) {
            break;
        }
        for (auto& [prefix, count] : counts_) {
            count += incomplete_.starts_with(prefix) ? 1 : 0;
        }
        latest_.push_back(incomplete_);
        if (latest_.size() > keptLines) {
            latest_.pop_front();
        }
        unread_.push_back(std::exchange(incomplete_, {}));
    }
    // The end of the file is only the end so far.
    stream_.clear();
}

}  // namespace soak
