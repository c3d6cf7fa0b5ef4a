#include "desktop/wait.h"

#include <poll.h>

#include <stdexcept>

namespace desktop {
namespace {

void pauseBriefly() {
    ::poll(nullptr, 0, 1);
}

}  // namespace

bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end) {
            // A busy machine may have kept this process from running: the last word counts.
            return condition();
        }
        pauseBriefly();
    }
    return true;
}

void require(const std::string& what, const std::function<bool()>& condition,
             std::chrono::milliseconds limit) {
    if (!waitUntil(condition, limit)) {
        throw std::runtime_error(what + " did not happen in time");
    }
}

bool staysTrue(const std::function<bool()>& condition, std::chrono::milliseconds duration) {
    return !waitUntil([&] { return !condition(); }, duration);
}

}  // namespace desktop
