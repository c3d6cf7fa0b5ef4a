#pragma once

#include <cstddef>

namespace allocation_limit {

/// While one of these lives, `operator new` refuses more than `bytes` at once, on every thread.
class AllocationLimit {
  public:
    explicit AllocationLimit(std::size_t bytes);
    ~AllocationLimit();
    AllocationLimit(const AllocationLimit&) = delete;
    AllocationLimit& operator=(const AllocationLimit&) = delete;
};

}  // namespace allocation_limit
