#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>

#include "platform/x11/connection.h"

namespace platform::x11 {

/// Which bit of an event's state says that an Alt key is held: the modifier that the keyboard
/// mapping gives to Alt. Main thread.
///
/// Asks at its making and reads the answer at its first use, which by then has long arrived.
class AltModifier {
  public:
    explicit AltModifier(Connection& connection);
    ~AltModifier();
    AltModifier(const AltModifier&) = delete;
    AltModifier& operator=(const AltModifier&) = delete;

    [[nodiscard]] bool isHeld(std::uint16_t state);

  private:
    [[nodiscard]] std::uint16_t read();

    Connection& connection_;
    xcb_get_modifier_mapping_cookie_t modifiers_;
    xcb_get_keyboard_mapping_cookie_t keys_;
    std::optional<std::uint16_t> mask_;
};

}  // namespace platform::x11
