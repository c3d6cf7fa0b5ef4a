#pragma once

#include <string>

#include "base/result.h"

namespace platform::freedesktop {

/// Makes `path` and its missing parents for the owner alone, as the base directory rules ask. What
/// is there already stays as it is, and need not be a directory.
base::Status makeDirectories(const std::string& path);

}  // namespace platform::freedesktop
