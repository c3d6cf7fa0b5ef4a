#include "allocation_limit.h"

#include <atomic>
#include <cstdlib>
#include <limits>
#include <new>

namespace {
std::atomic<std::size_t> largestAllocation{std::numeric_limits<std::size_t>::max()};
}

void* operator new(std::size_t size) {
    void* memory = size > largestAllocation ? nullptr : std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace allocation_limit {

AllocationLimit::AllocationLimit(std::size_t bytes) {
    largestAllocation = bytes;
}

AllocationLimit::~AllocationLimit() {
    largestAllocation = std::numeric_limits<std::size_t>::max();
}

}  // namespace allocation_limit
