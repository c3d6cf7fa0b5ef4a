#pragma once

#include <string>

#include "base/result.h"

namespace platform::freedesktop {

/// The last component of a path in typographic quotes.
std::string quotedName(const std::string& path);
/// The directory that holds `path`: everything before its last component.
std::string parentOf(const std::string& path);
/// Whether the system can be given `path`: it would take a zero byte for the end of it.
bool isWholePath(const std::string& path);

/// Why `path` could not be read, as one sentence for the user.
base::Error readError(const std::string& path, int errorNumber);
/// Why `path` could not be written, as one sentence for the user.
base::Error writeError(const std::string& path, int errorNumber);
/// Why `path` could not be removed, as one sentence for the user.
base::Error removeError(const std::string& path, int errorNumber);

}  // namespace platform::freedesktop
