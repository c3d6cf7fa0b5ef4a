#pragma once

#include <functional>
#include <memory>

namespace platform {

/// Calls `onReadable` on the main thread whenever `fileDescriptor` has something to read, until the
/// returned token is released. The descriptor must outlive the token. Main thread.
using WatchFileDescriptor =
    std::function<std::shared_ptr<void>(int fileDescriptor, std::function<void()> onReadable)>;

}  // namespace platform
