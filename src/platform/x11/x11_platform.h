#pragma once

#include <memory>

#include "base/result.h"
#include "platform/running_platform.h"

namespace platform::x11 {

/// The program on an X11 desktop: connects to the server and builds every adapter. The error is one
/// sentence. Once per process.
base::Result<std::unique_ptr<RunningPlatform>> createX11Platform(const StartOptions& options);

}  // namespace platform::x11
