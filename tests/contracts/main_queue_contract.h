#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>

#include "base/main_queue.h"

namespace contracts {

/// A main queue together with the loop that runs it.
class MainQueueWorld {
  public:
    virtual ~MainQueueWorld() = default;
    virtual base::MainQueue& queue() = 0;
    /// Lets the queue run until `isDone`, for some seconds at most; says whether it came to that.
    virtual bool runUntil(const std::function<bool()>& isDone) = 0;
    /// The time that has passed for the queue.
    virtual std::chrono::nanoseconds now() = 0;
};

using MakeMainQueueWorld = std::function<std::unique_ptr<MainQueueWorld>()>;

/// What every main queue does, whatever loop is behind it.
class MainQueueContract : public testing::TestWithParam<MakeMainQueueWorld> {
  protected:
    std::unique_ptr<MainQueueWorld> world_ = GetParam()();
    base::MainQueue& queue_ = world_->queue();
};

}  // namespace contracts
