#pragma once

#include "base/result.h"

namespace platform::helper {

/// What the kernel had to offer.
enum class FileConfinement { active, missing };

/// Leaves this process nothing but reading of files and directories, by Landlock, which needs Linux
/// 5.13 and may be switched off. Files that are open stay as they are. Needs "no new privileges".
base::Result<FileConfinement> confineFiles();

}  // namespace platform::helper
