#pragma once

#include <time.h>

namespace latency {

/// Milliseconds of the monotonic clock, to be compared with each other only.
inline double now() {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

}  // namespace latency
