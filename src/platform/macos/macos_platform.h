#pragma once

#include <memory>

#include "base/result.h"
#include "platform/running_platform.h"

namespace platform::macos {

/// The program on macOS: builds every adapter. Once per process; never fails.
base::Result<std::unique_ptr<RunningPlatform>> createMacosPlatform(const StartOptions& options);

}  // namespace platform::macos
