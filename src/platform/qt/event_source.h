#pragma once

#include <functional>
#include <memory>

#include "platform/dispatch.h"
#include "platform/file_descriptor_watch.h"

namespace platform::qt {

/// Lets a connection with a queue of its own take part in the toolkit's event loop: `dispatch` is
/// called when the descriptor is readable and each time before the loop goes to sleep, since a
/// reply can have brought events along that the descriptor no longer shows. No timers. Main thread,
/// between the making of the QCoreApplication and its end.
///
/// One event at a time: what it has posted to the main queue runs before the next one, however many
/// have come while the program was busy. So a release after Escape finds the overlay closed.
class EventSource {
  public:
    /// `dispatch` hands on one event, and says whether there was one.
    EventSource(int fileDescriptor, std::function<Dispatch()> dispatch);
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
