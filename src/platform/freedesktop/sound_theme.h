#pragma once

#include <optional>
#include <string>

#include "platform/freedesktop/xdg_directories.h"

namespace platform::freedesktop {

/// The file of a sound by its name in the desktop's sound theme ("freedesktop" and what it
/// inherits, then sounds of no theme); none when no theme has it.
///
/// Source of the look-up: XDG Sound Theme Specification 0.8, for stereo output.
std::optional<std::string> findSound(const XdgDirectories& directories, const std::string& name);

}  // namespace platform::freedesktop
