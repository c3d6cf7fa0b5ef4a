#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>

namespace platform::x11 {

// Stored key codes are the positional virtual key codes of the Apple keyboard. The kernel numbers
// positions too (linux/input-event-codes.h), and an X keycode is the kernel's number plus 8, so no
// conversion here depends on a layout. Every pair is one to one. Any thread.

/// The kernel's number of the position with the virtual key code; none where a PC keyboard has no
/// such position.
std::optional<std::uint32_t> evdevCodeOf(std::uint32_t virtualKeyCode);
/// The virtual key code of the position with the kernel's number; none for a key that has none.
std::optional<std::uint32_t> virtualKeyCodeOfEvdev(std::uint32_t evdevCode);

/// The X keycode of a virtual key code; none where there is no position, or one that the X protocol
/// cannot name (the Fn key).
std::optional<xcb_keycode_t> keycodeOf(std::uint32_t virtualKeyCode);
/// The virtual key code of the key that a key event names; none for a key that has none.
std::optional<std::uint32_t> virtualKeyCodeOf(xcb_keycode_t keycode);

/// Whether the position is one of the keys that only change the modifiers: command, shift, option,
/// control (both sides), Caps Lock and Fn. Pressing one is no key-down.
bool isModifierKey(std::uint32_t virtualKeyCode);

}  // namespace platform::x11
