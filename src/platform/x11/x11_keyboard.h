#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "base/main_queue.h"
#include "base/result.h"
#include "platform/x11/connection.h"
#include "platform/x11/key_router.h"
#include "platform/x11/keyboard_mapping.h"
#include "platform/x11/x11_hot_key_service.h"
#include "platform/x11/x11_keyboard_tap.h"

namespace platform::x11 {

/// The two ports of the keyboard, and the mapping that they share. Main thread.
class X11Keyboard {
  public:
    /// Fails when the server does not tell the keyboard mapping. Both arguments must outlive the
    /// keyboard.
    static base::Result<std::unique_ptr<X11Keyboard>> create(Connection& connection,
                                                             base::MainQueue& mainQueue);

    [[nodiscard]] const KeyboardMapping& mapping() const { return *mapping_; }
    [[nodiscard]] X11HotKeyService& hotKeys() { return hotKeys_; }
    [[nodiscard]] X11KeyboardTap& tap() { return tap_; }
    /// See KeyRouter::anticipateTap.
    void anticipateTap() { router_.anticipateTap(); }
    /// See KeyRouter::beforeGrab.
    void beforeGrab(std::function<void()> listener) { router_.beforeGrab(std::move(listener)); }

  private:
    X11Keyboard(Connection& connection, base::MainQueue& mainQueue,
                std::unique_ptr<KeyboardMapping> mapping);

    std::unique_ptr<KeyboardMapping> mapping_;
    KeyRouter router_;
    X11HotKeyService hotKeys_;
    X11KeyboardTap tap_;
};

}  // namespace platform::x11
