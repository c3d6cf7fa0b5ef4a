#pragma once

#include <sys/types.h>

#include <map>
#include <string>

namespace latency {

/// What the system knows of a process; zeroes when it is gone.
struct ProcessUsage {
    /// Time on a processor, all threads, those that ended included: milliseconds.
    double cpu = 0;
    /// How often each of its threads went to sleep by itself: each time is a wake-up later.
    std::map<std::string, long> sleeps;
    /// Resident, its share of it, and what is its alone: KiB.
    long resident = 0;
    long proportional = 0;
    long alone = 0;
};

/// Reads /proc; the memory only when asked for, since that takes the process's page tables.
enum class Memory { ignored, read };
ProcessUsage usageOf(pid_t process, Memory memory = Memory::ignored);

/// Of a size in KiB.
constexpr double mebibytes(long kibibytes) {
    return static_cast<double>(kibibytes) / 1024;
}

/// How often a thread woke up in between; one that ended did so at least once.
long wakeUpsBetween(const ProcessUsage& before, const ProcessUsage& after);

}  // namespace latency
