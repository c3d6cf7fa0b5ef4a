#pragma once

#include <cstddef>
#include <string>

#include "base/result.h"

namespace platform::freedesktop {

/// No configuration file that is meant seriously is larger.
inline constexpr std::size_t smallFileLimit = 1 << 20;

/// The bytes of a regular file of at most `smallFileLimit` bytes. Never blocks on a FIFO or a
/// device. Error kinds: notFound, notPermitted, invalid (no regular file, or too large), failed.
base::Result<std::string> readSmallFile(const std::string& path);

}  // namespace platform::freedesktop
