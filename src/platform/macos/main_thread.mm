#include "platform/macos/main_thread.h"

#import <Foundation/Foundation.h>

#include <memory>
#include <utility>

namespace platform::macos {

void runOnMainThread(std::function<void()> task) {
    // One owner, so that nothing of the task is left to be destroyed on this thread.
    auto* const kept = new std::function<void()>(std::move(task));
    dispatch_async(dispatch_get_main_queue(), ^{
      const std::unique_ptr<std::function<void()>> owned(kept);
      (*owned)();
    });
}

}  // namespace platform::macos
