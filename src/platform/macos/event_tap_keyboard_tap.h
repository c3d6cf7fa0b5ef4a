#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "base/main_queue.h"
#include "overlay/keyboard_tap.h"

namespace platform::macos {

/// An active event tap of the session, ahead of all others, whose source is on the main run loop.
/// The newest decides: the callback of the system gets no user data.
class EventTapKeyboardTap final : public overlay::KeyboardTap {
  public:
    // Main thread, as every method here and the calls of the handlers.
    /// `mainQueue` outlives the object.
    explicit EventTapKeyboardTap(base::MainQueue& mainQueue) : mainQueue_(mainQueue) {}

    base::Result<std::unique_ptr<overlay::EventTap>> create(Handler handler) override;
    /// Nothing on this system holds the keyboard for a moment only: `ready` is called in the next
    /// turn.
    void whenAvailable(std::chrono::milliseconds limit, std::function<void()> ready) override;

  private:
    base::MainQueue& mainQueue_;
};

}  // namespace platform::macos
