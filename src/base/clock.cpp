#include "base/clock.h"

#include <array>

namespace base {

std::tm SystemClock::localTime() const {
    const std::time_t now = std::time(nullptr);
    // Only the main thread asks for the time, so the shared buffer of localtime is enough.
    const std::tm* local = std::localtime(&now);
    return local == nullptr ? std::tm{} : *local;
}

std::string fileNameDate(const std::tm& time) {
    std::array<char, 64> buffer{};
    const std::size_t length =
        std::strftime(buffer.data(), buffer.size(), "%Y-%m-%d at %H.%M.%S", &time);
    return {buffer.data(), length};
}

}  // namespace base
