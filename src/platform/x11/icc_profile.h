#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace platform::x11 {

/// The ICC profile in `bytes`, which anybody may have put on the root window: exactly as long as
/// its header says. None when it is no profile of a device with red, green and blue, or when any of
/// its parts lies outside of it. Any thread.
///
/// Sizes, offsets and signatures are those of ICC.1:2022, sections 7.2 and 7.3.
std::optional<std::vector<std::uint8_t>> checkedIccProfile(std::vector<std::uint8_t> bytes);

/// What the profile calls itself, in UTF-8, the English name where there are several; empty when it
/// has no name that can be read. Any thread.
///
/// `profile` is a checked one. The two forms of the name are those of ICC.1:2001-04,
/// section 6.5.17, and of ICC.1:2022, section 10.15.
std::string iccDescription(const std::vector<std::uint8_t>& profile);

}  // namespace platform::x11
