#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace platform::qt {

/// The bytes of a PNG file as a picture file of the kind `mimeType` ("image/bmp", "image/jpeg"),
/// with its resolution; on white where the kind has no alpha. Empty when Qt cannot write that kind
/// or read these bytes. Any thread.
[[nodiscard]] std::vector<std::uint8_t> convertPng(std::span<const std::uint8_t> png,
                                                   std::string_view mimeType);

}  // namespace platform::qt
