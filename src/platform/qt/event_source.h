#pragma once

#include <functional>
#include <memory>

#include "platform/file_descriptor_watch.h"

namespace platform::qt {

/// Lets a connection with a queue of its own take part in the toolkit's event loop: `dispatch` is
/// called when the descriptor is readable and each time before the loop goes to sleep, since a
/// reply can have brought events along that the descriptor no longer shows. No timers. Main thread,
/// between the making of the QCoreApplication and its end.
class EventSource {
  public:
    EventSource(int fileDescriptor, std::function<void()> dispatch);
    ~EventSource();
    EventSource(const EventSource&) = delete;
    EventSource& operator=(const EventSource&) = delete;

  private:
    class Receiver;
    std::unique_ptr<Receiver> receiver_;
};

/// Watches descriptors by the toolkit's event loop.
WatchFileDescriptor fileDescriptorWatch();

}  // namespace platform::qt
