#pragma once

#include <functional>
#include <memory>

#include "base/alive.h"
#include "base/main_queue.h"
#include "base/result.h"
#include "platform/x11/connection.h"
#include "platform/x11/modifier_map.h"

namespace platform::x11 {

/// The modifiers of the keyboard as it is now, and word when they change. Main thread.
///
/// Also asks the server for auto-repeat that can be told from presses (no release between two
/// presses of a held key) on this connection.
class KeyboardMapping {
  public:
    /// Fails when the server does not tell the mapping.
    static base::Result<std::unique_ptr<KeyboardMapping>> create(Connection& connection,
                                                                 base::MainQueue& mainQueue);
    KeyboardMapping(const KeyboardMapping&) = delete;
    KeyboardMapping& operator=(const KeyboardMapping&) = delete;

    [[nodiscard]] const ModifierMap& modifiers() const { return modifiers_; }
    [[nodiscard]] bool hasKeycode(xcb_keycode_t keycode) const;
    /// `listener` is called in a later turn, once for any number of changes that come together, and
    /// only when `modifiers` differs: keys themselves never move.
    void onChange(std::function<void()> listener);

  private:
    enum class Refresh { none, posted };

    KeyboardMapping(Connection& connection, base::MainQueue& mainQueue, ModifierMap modifiers);
    Connection::EventVerdict handle(const xcb_generic_event_t& event);
    void postRefresh();
    void refresh();

    Connection& connection_;
    base::MainQueue& mainQueue_;
    ModifierMap modifiers_;
    std::uint8_t xkbEvent_ = 0;
    std::function<void()> listener_;
    Refresh refresh_ = Refresh::none;
    base::Alive alive_;
    Connection::Subscription subscription_;
};

}  // namespace platform::x11
