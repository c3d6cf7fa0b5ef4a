#pragma once

#include <string>

namespace platform::freedesktop {

/// Plays a sound file and returns when it has been heard, when there is no sound server, or when
/// the library is not installed. May take as long as the server does not answer. For the helper
/// program alone: the library and what it loads stay in memory.
void playThroughCanberra(const std::string& path);

}  // namespace platform::freedesktop
