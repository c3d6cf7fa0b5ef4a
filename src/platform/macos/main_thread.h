#pragma once

#include <functional>

namespace platform::macos {

/// Runs `task` once on the main thread in a later turn, and destroys it there. Any thread, at any
/// time: the queue behind it belongs to the process and outlives every object.
void runOnMainThread(std::function<void()> task);

}  // namespace platform::macos
