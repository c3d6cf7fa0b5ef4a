#pragma once

#include <chrono>
#include <functional>
#include <vector>

namespace latency {

/// Something that is told of events through a descriptor and notes when they came.
class Watch {
  public:
    virtual ~Watch() = default;
    [[nodiscard]] virtual int descriptor() const = 0;
    /// Takes everything that has arrived.
    virtual void drain() = 0;
};

/// Sleeps until one of the watches is told something, again and again, until `condition` holds.
/// False when `limit` has passed first.
bool watchUntil(const std::vector<Watch*>& watches, const std::function<bool()>& condition,
                std::chrono::milliseconds limit);

/// Lets `duration` pass without waking up.
void rest(std::chrono::milliseconds duration);

}  // namespace latency
