#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace platform::x11 {

/// The ICC profile in `bytes`, which anybody may have put on the root window: exactly as long as
/// its header says. None when its size or its signature is wrong. Any thread.
///
/// Sizes and offsets are those of the header in ICC.1:2022, section 7.2.
std::optional<std::vector<std::uint8_t>> checkedIccProfile(std::vector<std::uint8_t> bytes);

}  // namespace platform::x11
