#pragma once

#include <sys/types.h>

namespace latency {

/// What the system knows of a process; zeroes when it is gone.
struct ProcessUsage {
    /// Time on a processor, all threads, those that ended included: milliseconds.
    double cpu = 0;
    /// How often one of its threads went to sleep by itself: each is a wake-up later.
    long wakeUps = 0;
    /// Resident, its share of it, and what is its alone: KiB.
    long resident = 0;
    long proportional = 0;
    long alone = 0;
};

/// Reads /proc; the memory only when asked for, since that takes the process's page tables.
enum class Memory { ignored, read };
ProcessUsage usageOf(pid_t process, Memory memory = Memory::ignored);

}  // namespace latency
