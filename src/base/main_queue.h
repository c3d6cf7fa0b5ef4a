#pragma once

#include <chrono>
#include <functional>

namespace base {

/// The queue of the main thread.
class MainQueue {
  public:
    virtual ~MainQueue() = default;
    /// Runs `task` once on the main thread in a later turn, in the order of the calls. Any thread.
    virtual void post(std::function<void()> task) = 0;
    /// Runs `task` once on the main thread when `delay` has passed. Main thread.
    virtual void postAfter(std::chrono::milliseconds delay, std::function<void()> task) = 0;
};

}  // namespace base
