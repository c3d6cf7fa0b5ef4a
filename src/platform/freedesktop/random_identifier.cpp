#include "platform/freedesktop/random_identifier.h"

#include <sys/random.h>

#include <array>
#include <cerrno>
#include <cstdint>

#include "base/log.h"

namespace platform::freedesktop {

std::string randomIdentifier() {
    std::array<std::uint8_t, 16> bytes{};
    // 16 bytes come whole or not at all; only a signal before the pool is ready interrupts.
    while (::getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
        if (errno != EINTR) {
            base::fatalError("The system has no random numbers.");
        }
    }
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);
    constexpr char digits[] = "0123456789ABCDEF";
    std::string text;
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        if (index == 4 || index == 6 || index == 8 || index == 10) {
            text += '-';
        }
        text += digits[bytes[index] >> 4];
        text += digits[bytes[index] & 0x0F];
    }
    return text;
}

}  // namespace platform::freedesktop
