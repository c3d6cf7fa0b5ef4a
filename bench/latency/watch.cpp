#include "latency/watch.h"

#include <poll.h>

#include <algorithm>

#include "latency/monotonic.h"

namespace latency {

bool watchUntil(const std::vector<Watch*>& watches, const std::function<bool()>& condition,
                std::chrono::milliseconds limit) {
    const double end = now() + static_cast<double>(limit.count());
    std::vector<pollfd> waiting;
    for (const Watch* watch : watches) {
        waiting.push_back({watch->descriptor(), POLLIN, 0});
    }
    while (true) {
        for (Watch* watch : watches) {
            watch->drain();
        }
        if (condition()) {
            return true;
        }
        const double left = end - now();
        if (left <= 0) {
            return false;
        }
        // A condition may also depend on what no descriptor tells.
        constexpr double longestSleep = 20;
        ::poll(waiting.data(), waiting.size(), static_cast<int>(std::min(left, longestSleep)) + 1);
    }
}

void rest(std::chrono::milliseconds duration) {
    ::poll(nullptr, 0, static_cast<int>(duration.count()));
}

}  // namespace latency
