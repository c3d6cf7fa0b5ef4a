#include "demo/stillness.h"

#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>

#include "desktop/wait.h"

namespace demo {

namespace {

namespace fs = std::filesystem;

/// The state letter and the parent of a process or thread, from its file "stat".
struct Status {
    char state = 'X';
    pid_t parent = 0;
    std::string name;
};

Status statusOf(const fs::path& directory) {
    std::ifstream file(directory / "stat");
    const std::string text((std::istreambuf_iterator<char>(file)), {});
    // The name stands in parentheses and may hold spaces and parentheses itself.
    const auto open = text.find('(');
    const auto close = text.rfind(')');
    if (open == std::string::npos || close == std::string::npos || close + 4 > text.size()) {
        return {};
    }
    return {text[close + 2], std::stoi(text.substr(close + 4)),
            text.substr(open + 1, close - open - 1)};
}

/// How often a thread has been given a processor: the third number of "schedstat".
std::uint64_t turnsOf(const fs::path& directory) {
    std::ifstream file(directory / "schedstat");
    std::uint64_t running = 0;
    std::uint64_t waiting = 0;
    std::uint64_t turns = 0;
    file >> running >> waiting >> turns;
    return turns;
}

std::map<pid_t, Status> descendants() {
    std::map<pid_t, Status> all;
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator("/proc", ignored)) {
        const std::string name = entry.path().filename();
        if (name.find_first_not_of("0123456789") == std::string::npos) {
            all[std::stoi(name)] = statusOf(entry.path());
        }
    }
    std::map<pid_t, Status> ours;
    for (bool isGrowing = true; isGrowing;) {
        isGrowing = false;
        for (const auto& [pid, status] : all) {
            if ((status.parent == ::getpid() || ours.contains(status.parent)) &&
                !ours.contains(pid)) {
                ours[pid] = status;
                isGrowing = true;
            }
        }
    }
    return ours;
}

/// What has run so far; `isAsleep` only while no thread wants to run.
struct Activity {
    bool isAsleep = true;
    std::map<std::string, std::uint64_t> turns;
    friend bool operator==(const Activity&, const Activity&) = default;
};

Activity activity() {
    Activity now;
    std::error_code ignored;
    for (const auto& [pid, process] : descendants()) {
        const fs::path tasks = fs::path("/proc") / std::to_string(pid) / "task";
        for (const auto& task : fs::directory_iterator(tasks, ignored)) {
            const Status status = statusOf(task.path());
            now.isAsleep = now.isAsleep && status.state != 'R' && status.state != 'D';
            // The server runs for our own questions, too.
            if (process.name != "Xvfb") {
                now.turns[task.path()] = turnsOf(task.path());
            }
        }
    }
    return now;
}

}  // namespace

void Stillness::wait() const {
    using Clock = std::chrono::steady_clock;
    constexpr auto calm = std::chrono::milliseconds(25);
    client_.synchronize();
    Activity last = activity();
    auto since = Clock::now();
    desktop::require("A desktop on which nothing happens", [&] {
        Activity now = activity();
        if (!now.isAsleep || now != last) {
            last = std::move(now);
            since = Clock::now();
        }
        return Clock::now() - since >= calm;
    });
}

}  // namespace demo
