#include "latency/process_usage.h"

#include <time.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace latency {

namespace {

namespace fs = std::filesystem;

/// The number behind "<name>:" in a file of such lines, 0 when there is none.
long valueIn(const fs::path& file, const std::string& name) {
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with(name + ":")) {
            return std::stol(line.substr(name.size() + 1));
        }
    }
    return 0;
}

/// Of all its threads, those that ended included.
double processorTime(pid_t process) {
    clockid_t clock{};
    timespec time{};
    if (::clock_getcpuclockid(process, &clock) != 0 || ::clock_gettime(clock, &time) != 0) {
        return 0;
    }
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

}  // namespace

ProcessUsage usageOf(pid_t process, Memory memory) {
    const fs::path folder = "/proc/" + std::to_string(process);
    ProcessUsage usage;
    usage.cpu = processorTime(process);
    std::error_code gone;
    for (const auto& thread : fs::directory_iterator(folder / "task", gone)) {
        usage.sleeps[thread.path().filename()] =
            valueIn(thread.path() / "status", "voluntary_ctxt_switches");
    }
    if (memory == Memory::read) {
        const fs::path rollup = folder / "smaps_rollup";
        usage.resident = valueIn(rollup, "Rss");
        usage.proportional = valueIn(rollup, "Pss");
        usage.alone = valueIn(rollup, "Private_Clean") + valueIn(rollup, "Private_Dirty");
    }
    return usage;
}

long wakeUpsBetween(const ProcessUsage& before, const ProcessUsage& after) {
    long count = 0;
    for (const auto& [thread, sleeps] : after.sleeps) {
        const auto known = before.sleeps.find(thread);
        count += known == before.sleeps.end() ? sleeps + 1 : sleeps - known->second;
    }
    for (const auto& [thread, sleeps] : before.sleeps) {
        count += after.sleeps.contains(thread) ? 0 : 1;
    }
    return count;
}

}  // namespace latency
