#pragma once

#include <poll.h>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "platform/file_descriptor_watch.h"

namespace doubles {

/// Watches descriptors when the test says so.
class PolledWatch {
  public:
    [[nodiscard]] platform::WatchFileDescriptor watch() {
        return [this](int number, std::function<void()> onReadable) -> std::shared_ptr<void> {
            auto entry = std::make_shared<Entry>(Entry{number, std::move(onReadable)});
            entries_.push_back(entry);
            return entry;
        };
    }
    /// Calls what is due; whether there was something.
    bool dispatch() {
        bool isReadable = false;
        for (const auto& weak : std::vector<std::weak_ptr<Entry>>(entries_)) {
            const auto entry = weak.lock();
            pollfd watched{entry ? entry->number : -1, POLLIN, 0};
            if (entry && ::poll(&watched, 1, 0) > 0) {
                entry->onReadable();
                isReadable = true;
            }
        }
        return isReadable;
    }

  private:
    struct Entry {
        int number;
        std::function<void()> onReadable;
    };
    std::vector<std::weak_ptr<Entry>> entries_;
};

}  // namespace doubles
