#pragma once

#include "base/result.h"

namespace platform::video {

/// What an error number of the codec libraries means.
base::Error codecError(int number);

}  // namespace platform::video
