#include "base/clock.h"

namespace base {

std::tm SystemClock::localTime() const {
    const std::time_t now = std::time(nullptr);
    // Only the main thread asks for the time, so the shared buffer of localtime is enough.
    const std::tm* local = std::localtime(&now);
    return local == nullptr ? std::tm{} : *local;
}

}  // namespace base
