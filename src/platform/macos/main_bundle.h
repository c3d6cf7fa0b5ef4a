#pragma once

#include "base/bundle.h"

namespace platform::macos {

/// The application bundle that runs, and the picture of its icon among its resources. Main thread.
base::Bundle mainBundle();

}  // namespace platform::macos
