#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace journeys {

/// A process's resident memory in KiB, 0 when it is not there.
long residentMemory(pid_t process);

/// What a process has done so far; the same twice means that it has not run in between.
struct Activity {
    /// How often its threads have gone to sleep by themselves.
    long sleeps = 0;
    /// In clock ticks.
    long processorTime = 0;
    friend bool operator==(const Activity&, const Activity&) = default;
};
Activity activityOf(pid_t process);

struct ChildProcess {
    pid_t pid = 0;
    /// At most 15 letters, as the system keeps them.
    std::string name{};
    /// Z: dead, and not reaped.
    char state = '?';
};
std::vector<ChildProcess> childrenOf(pid_t parent);

/// The child of `parent` whose name begins so, 0 when there is none.
pid_t childOf(pid_t parent, const std::string& name);

}  // namespace journeys
