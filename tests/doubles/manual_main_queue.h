#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <deque>
#include <functional>
#include <mutex>
#include <utility>
#include <vector>

#include "base/main_queue.h"

namespace doubles {

/// A main queue that runs only when the test says so, with a time of its own.
///
/// A queue that dies with work in it fails the test: something was started and never finished.
class ManualMainQueue final : public base::MainQueue {
  public:
    ManualMainQueue() = default;
    ManualMainQueue(const ManualMainQueue&) = delete;
    ManualMainQueue& operator=(const ManualMainQueue&) = delete;
    ~ManualMainQueue() override {
        if (leftovers_ == Leftovers::fail) {
            EXPECT_EQ(pendingCount(), 0U) << "tasks were left on the main queue";
            EXPECT_EQ(delayedCount(), 0U) << "delayed tasks were left on the main queue";
        }
    }

    void post(std::function<void()> task) override {
        const std::lock_guard lock(mutex_);
        ready_.push_back(std::move(task));
    }
    void postAfter(std::chrono::milliseconds delay, std::function<void()> task) override {
        const std::lock_guard lock(mutex_);
        const auto due = now_ + delay;
        const auto later = std::find_if(delayed_.begin(), delayed_.end(),
                                        [&](const Delayed& other) { return other.due > due; });
        delayed_.insert(later, {due, std::move(task)});
    }

    /// Runs the first task that is due; says whether there was one.
    bool runNext() {
        std::function<void()> task;
        {
            const std::lock_guard lock(mutex_);
            if (ready_.empty()) {
                return false;
            }
            task = std::move(ready_.front());
            ready_.pop_front();
        }
        task();
        return true;
    }
    /// Runs every task that is due, and those that these post.
    void runAll() {
        for (int turn = 0; runNext(); ++turn) {
            if (turn == turnLimit) {
                ADD_FAILURE() << "the main queue never runs empty";
                return;
            }
        }
    }
    /// Lets the time pass; tasks run at their moment, each after what was due before it.
    void advance(std::chrono::milliseconds time) {
        runAll();
        const auto end = now_ + time;
        while (makeNextDelayedReady(end)) {
            runAll();
        }
        now_ = end;
    }

    [[nodiscard]] std::size_t pendingCount() const {
        const std::lock_guard lock(mutex_);
        return ready_.size();
    }
    [[nodiscard]] std::size_t delayedCount() const {
        const std::lock_guard lock(mutex_);
        return delayed_.size();
    }
    /// How long each delayed task still has to wait, the next one first.
    [[nodiscard]] std::vector<std::chrono::milliseconds> remainingDelays() const {
        const std::lock_guard lock(mutex_);
        std::vector<std::chrono::milliseconds> delays;
        for (const Delayed& delayed : delayed_) {
            delays.push_back(delayed.due - now_);
        }
        return delays;
    }
    /// For tests about something that is meant to stay unfinished.
    void allowLeftovers() { leftovers_ = Leftovers::allow; }

  private:
    struct Delayed {
        std::chrono::milliseconds due;
        std::function<void()> task;
    };
    enum class Leftovers { fail, allow };
    static constexpr int turnLimit = 100000;

    bool makeNextDelayedReady(std::chrono::milliseconds end) {
        const std::lock_guard lock(mutex_);
        if (delayed_.empty() || delayed_.front().due > end) {
            return false;
        }
        now_ = delayed_.front().due;
        ready_.push_back(std::move(delayed_.front().task));
        delayed_.erase(delayed_.begin());
        return true;
    }

    mutable std::mutex mutex_;
    std::deque<std::function<void()>> ready_;
    std::vector<Delayed> delayed_;
    std::chrono::milliseconds now_{0};
    Leftovers leftovers_ = Leftovers::fail;
};

}  // namespace doubles
