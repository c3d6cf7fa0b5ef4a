#pragma once

#include <cstdint>

namespace overlay {

// The keys that steer the overlay, by their virtual key codes.
inline constexpr std::uint32_t spaceKeyCode = 49;
inline constexpr std::uint32_t escapeKeyCode = 53;

}  // namespace overlay
