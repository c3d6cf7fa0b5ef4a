#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <string>
#include <vector>

#include "desktop/x_client.h"

namespace desktop {

/// X key codes (evdev code + 8) of the keys that tests press by position.
namespace key {
inline constexpr std::uint8_t escape = 9;
inline constexpr std::uint8_t digit1 = 10;
inline constexpr std::uint8_t digit2 = 11;
inline constexpr std::uint8_t digit3 = 12;
inline constexpr std::uint8_t q = 24;
inline constexpr std::uint8_t a = 38;
inline constexpr std::uint8_t comma = 59;
inline constexpr std::uint8_t returnKey = 36;
inline constexpr std::uint8_t tab = 23;
inline constexpr std::uint8_t leftControl = 37;
inline constexpr std::uint8_t leftShift = 50;
inline constexpr std::uint8_t leftAlt = 64;
inline constexpr std::uint8_t space = 65;
inline constexpr std::uint8_t capsLock = 66;
inline constexpr std::uint8_t numLock = 77;
inline constexpr std::uint8_t leftSuper = 133;
}  // namespace key

/// A place on the screen, native pixels from the top left.
struct Place {
    int x = 0;
    int y = 0;
};

/// The hands of the person: keys and pointer through the XTEST extension. Every call returns when
/// the server has carried it out (programs may still have the events before them).
class InputDriver {
  public:
    explicit InputDriver(const std::string& displayName);

    void press(std::uint8_t keyCode);
    void release(std::uint8_t keyCode);
    /// Presses in the given order, releases in reverse.
    void chord(const std::vector<std::uint8_t>& keyCodes);
    void tap(std::uint8_t keyCode) { chord({keyCode}); }
    /// The key code that gives `keysym` in the first group; throws when no key does.
    [[nodiscard]] std::uint8_t keyCodeOf(std::uint32_t keysym) const;

    void moveTo(Place place);
    void pressButton(std::uint8_t button = 1);
    void releaseButton(std::uint8_t button = 1);
    void click(Place place, std::uint8_t button = 1);
    /// Moves in `steps` equal steps; the last one ends exactly at `to`.
    void moveInSteps(Place from, Place to, int steps = 8);
    /// Moves to `from`, presses the left button, moves in steps to `to` and releases.
    void drag(Place from, Place to, int steps = 8);

  private:
    void fake(std::uint8_t type, std::uint8_t detail, Place place = {});

    XClient client_;
};

}  // namespace desktop
