#include "platform/x11/icc_profile.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace platform::x11 {

namespace {

/// The header and the count of the tag table.
constexpr std::size_t smallestProfile = 132;
constexpr std::size_t signatureOffset = 36;
constexpr std::array<std::uint8_t, 4> signature{'a', 'c', 's', 'p'};

}  // namespace

std::optional<std::vector<std::uint8_t>> checkedIccProfile(std::vector<std::uint8_t> bytes) {
    if (bytes.size() < smallestProfile) {
        return std::nullopt;
    }
    const std::size_t size = std::size_t{bytes[0]} << 24U | std::size_t{bytes[1]} << 16U |
                             std::size_t{bytes[2]} << 8U | std::size_t{bytes[3]};
    if (size < smallestProfile || size > bytes.size() ||
        !std::equal(signature.begin(), signature.end(), bytes.begin() + signatureOffset)) {
        return std::nullopt;
    }
    bytes.resize(size);
    return bytes;
}

}  // namespace platform::x11
