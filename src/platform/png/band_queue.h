#pragma once

#include <mutex>
#include <optional>

namespace platform::png {

/// Hands out the bands of a picture, each once: to the caller that writes the file from the first
/// one on, to those that help it from the last one back. Any thread.
///
/// Threads do not run at the same pace, least of all beside an X server that is painting: one that
/// comes late takes fewer.
class BandQueue {
  public:
    explicit BandQueue(int count) : end_(count) {}

    /// The next one from the front, nothing when all are taken.
    std::optional<int> takeFirst() {
        const std::lock_guard lock(mutex_);
        return first_ < end_ ? std::optional(first_++) : std::nullopt;
    }
    std::optional<int> takeLast() {
        const std::lock_guard lock(mutex_);
        return first_ < end_ ? std::optional(--end_) : std::nullopt;
    }

  private:
    std::mutex mutex_;
    int first_ = 0;
    int end_;
};

}  // namespace platform::png
