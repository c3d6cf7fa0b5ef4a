#include "journeys/process_figures.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <utility>

namespace journeys {

namespace {

namespace fs = std::filesystem;

long valueOf(const fs::path& directory, const std::string& name) {
    std::ifstream status(directory / "status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(name + ":")) {
            return std::stol(line.substr(name.size() + 1));
        }
    }
    return 0;
}

/// What follows the name in the file "stat": the state, the parent and so on.
std::istringstream fieldsBehindName(const fs::path& directory) {
    std::ifstream file(directory / "stat");
    std::string text;
    std::getline(file, text);
    const auto end = text.rfind(')');
    return std::istringstream(end == std::string::npos ? "" : text.substr(end + 1));
}

fs::path directoryOf(pid_t process) {
    return fs::path("/proc") / std::to_string(process);
}

}  // namespace

long residentMemory(pid_t process) {
    return valueOf(directoryOf(process), "VmRSS");
}

Activity activityOf(pid_t process) {
    Activity activity;
    std::error_code ignored;
    for (const auto& task : fs::directory_iterator(directoryOf(process) / "task", ignored)) {
        activity.sleeps += valueOf(task.path(), "voluntary_ctxt_switches");
    }
    auto fields = fieldsBehindName(directoryOf(process));
    std::string word;
    // Behind the name: eleven fields, then the user's and the system's time.
    for (int field = 0; field < 11; ++field) {
        fields >> word;
    }
    long user = 0;
    long system = 0;
    fields >> user >> system;
    activity.processorTime = user + system;
    return activity;
}

std::vector<ChildProcess> childrenOf(pid_t parent) {
    std::vector<ChildProcess> children;
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator("/proc", ignored)) {
        const std::string number = entry.path().filename();
        if (number.find_first_not_of("0123456789") != std::string::npos) {
            continue;
        }
        ChildProcess child{.pid = std::stoi(number)};
        std::getline(std::ifstream(entry.path() / "comm") >> std::ws, child.name);
        auto fields = fieldsBehindName(entry.path());
        pid_t itsParent = 0;
        fields >> child.state >> itsParent;
        if (itsParent == parent) {
            children.push_back(std::move(child));
        }
    }
    return children;
}

pid_t childOf(pid_t parent, const std::string& name) {
    for (const ChildProcess& child : childrenOf(parent)) {
        if (child.name.starts_with(name)) {
            return child.pid;
        }
    }
    return 0;
}

}  // namespace journeys
