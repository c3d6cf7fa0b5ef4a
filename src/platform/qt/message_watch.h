#pragma once

#include <functional>

namespace platform::qt {

/// Calls a function before the toolkit prints a message of its own, which nobody but its developers
/// understands. One at a time; made and destroyed on the main thread.
class MessageWatch {
  public:
    /// `beforeMessage` is called on the thread that the message comes from.
    explicit MessageWatch(std::function<void()> beforeMessage);
    ~MessageWatch();
    MessageWatch(const MessageWatch&) = delete;
    MessageWatch& operator=(const MessageWatch&) = delete;
};

}  // namespace platform::qt
