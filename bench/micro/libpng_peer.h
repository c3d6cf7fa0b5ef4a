#pragma once

#include <cstdint>
#include <vector>

#include "base/image.h"

namespace bench {

/// Red, green, blue of every pixel, rows without gaps: the form that other PNG writers take.
std::vector<std::uint8_t> packed(const base::Image& image);

/// libpng as a program gets it that changes nothing: every filter tried, zlib's level 6. Opaque, 8
/// bits a channel, no metadata.
std::vector<std::uint8_t> encodeWithLibpng(const base::Image& image);

}  // namespace bench
