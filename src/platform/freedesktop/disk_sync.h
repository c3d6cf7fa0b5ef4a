#pragma once

#include <string>

namespace platform::freedesktop {

/// Has the disk keep the file at `path` and its name, on a thread of its own. Returns at once;
/// failures are not reported. Any thread.
void syncInBackground(const std::string& path);

}  // namespace platform::freedesktop
