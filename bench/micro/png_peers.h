#pragma once

#include <cstdint>
#include <vector>

#include "base/image.h"

/// What other PNG writers make of the same picture: opaque, 8 bits a channel, no metadata.
namespace bench {

/// libspng as a program gets it that changes nothing.
std::vector<std::uint8_t> encodeWithLibspng(const base::Image& image);

/// Rows as differences from the row above, compressed by libdeflate at level 1, on one thread.
std::vector<std::uint8_t> encodeWithLibdeflate(const base::Image& image);

}  // namespace bench
