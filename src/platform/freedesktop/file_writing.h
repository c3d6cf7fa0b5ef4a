#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "base/result.h"

namespace platform::freedesktop {

/// Opens `path` as it is (creating or emptying it) and writes `bytes`. A pipe that takes nothing
/// for a second is an error, so that a stalled reader never holds the caller. The process ignores
/// SIGPIPE, so that a reader who leaves is an error too.
base::Status writeInPlace(const std::string& path, std::span<const std::uint8_t> bytes);

/// Who may read the new file.
enum class FileAccess {
    /// Mode 0600.
    ownerOnly,
    /// Mode 0666 less the umask of the process.
    asUserPrefers,
};

/// Writes `text` to a new file beside `path` and renames it over `path`. The new file is removed
/// when anything fails.
base::Status replaceFile(const std::string& path, std::string_view text, FileAccess access);

}  // namespace platform::freedesktop
