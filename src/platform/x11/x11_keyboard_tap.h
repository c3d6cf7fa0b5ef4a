#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "base/main_queue.h"
#include "overlay/keyboard_tap.h"
#include "platform/x11/key_router.h"

namespace platform::x11 {

/// Sees every key-down by holding the keyboard: no other program gets any key meanwhile, so a press
/// that the handler lets pass reaches nobody either. Main thread.
///
/// A press that is a registered hot key, and the repeats of it, are hot-key presses and never reach
/// a handler. Keys that only change the modifiers are not reported.
class X11KeyboardTap final : public overlay::KeyboardTap {
  public:
    /// Both must outlive this object; the taps it makes may outlive all three.
    X11KeyboardTap(KeyRouter& router, base::MainQueue& mainQueue);
    ~X11KeyboardTap() override;
    X11KeyboardTap(const X11KeyboardTap&) = delete;
    X11KeyboardTap& operator=(const X11KeyboardTap&) = delete;

    base::Result<std::unique_ptr<overlay::EventTap>> create(Handler handler) override;
    /// `listener` is called each time when `create` fails because another program holds the
    /// keyboard.
    void onRefused(std::function<void()> listener) { onRefused_ = std::move(listener); }
    /// When this object is destroyed first, `ready` is not called any more.
    void whenAvailable(std::chrono::milliseconds limit, std::function<void()> ready) override;

  private:
    void tryAgain(std::chrono::milliseconds remaining, std::function<void()> ready);

    base::MainQueue& mainQueue_;
    std::function<void()> onRefused_;
    /// Held by this object alone, looked at by its taps and delayed tries.
    std::shared_ptr<KeyRouter*> router_;
};

}  // namespace platform::x11
