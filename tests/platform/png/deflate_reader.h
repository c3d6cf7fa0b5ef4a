#pragma once

#include <cstdint>
#include <vector>

namespace png_reader {

/// What zlib makes of a raw deflate stream of `size` bytes inflated; empty unless it is one whole
/// stream and nothing more.
std::vector<std::uint8_t> inflated(const std::vector<std::uint8_t>& stream, std::size_t size);

}  // namespace png_reader
