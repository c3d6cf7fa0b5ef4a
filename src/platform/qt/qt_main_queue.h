#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "base/main_queue.h"

namespace platform::qt {

/// The main queue over the toolkit's event loop. Built and destroyed on the main thread, after the
/// QCoreApplication and before it; what is still queued at its destruction is dropped.
class QtMainQueue final : public base::MainQueue {
  public:
    QtMainQueue();
    ~QtMainQueue() override;
    QtMainQueue(const QtMainQueue&) = delete;
    QtMainQueue& operator=(const QtMainQueue&) = delete;

    void post(std::function<void()> task) override;
    void postAfter(std::chrono::milliseconds delay, std::function<void()> task) override;

  private:
    class Receiver;
    std::unique_ptr<Receiver> receiver_;
};

}  // namespace platform::qt
