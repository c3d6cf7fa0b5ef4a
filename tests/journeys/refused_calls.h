#pragma once

#include <atomic>
#include <cstdint>

namespace journeys {

/// The environment variable that names the file through which a program is told what to refuse.
inline constexpr const char* refusalsVariable = "LUMAFRAME_TEST_REFUSALS";

/// What the library of refused_calls.cpp refuses to the program that it is loaded into. The file is
/// mapped by that program and by the test, which both know it as this.
struct RefusalOrders {
    enum Call : std::uint32_t {
        /// malloc and its kin, by which the program gets all of its own memory.
        allocation = 1,
        /// memfd_create, ftruncate and mmap, which make what is shared with the X server.
        sharedMemory = 2,
        /// write to a file of the disk fails as it does when the user's quota is used up.
        writeBeyondQuota = 4,
    };
    std::atomic<std::uint32_t> calls;
    /// Requests for fewer bytes are not counted and always granted.
    std::atomic<std::uint64_t> smallest;
    /// So many are granted, then so many are refused.
    std::atomic<std::int32_t> granted;
    std::atomic<std::int32_t> refused;
    /// How many were refused so far.
    std::atomic<std::int32_t> refusals;
};

}  // namespace journeys
