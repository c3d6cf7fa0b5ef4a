#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace platform::x11 {

/// The bits of a key event's state, as xcb_mod_mask_t has them.
using ModifierMask = std::uint16_t;

/// Which modifier bits the keyboard's keys give: Shift, Lock and Control are fixed by the protocol,
/// the others are found by the symbols of the keys that carry them.
struct ModifierMap {
    /// Super. 0 when no key gives it, here and below.
    ModifierMask command = 0;
    /// Alt.
    ModifierMask option = 0;
    ModifierMask numLock = 0;
    ModifierMask scrollLock = 0;
    friend bool operator==(const ModifierMap&, const ModifierMap&) = default;
};

/// The answers of GetModifierMapping and GetKeyboardMapping.
struct KeyboardTables {
    /// Eight rows of equal length, one for each modifier bit; 0 fills them up.
    std::span<const xcb_keycode_t> modifierKeycodes;
    xcb_keycode_t firstKeycode = 8;
    std::size_t keysymsPerKeycode = 0;
    std::span<const xcb_keysym_t> keysyms;
};

ModifierMap modifierMapOf(const KeyboardTables& tables);

/// The bits of a stored mask (an OR of `shortcuts::commandModifier` and its like); none for a mask
/// with other bits in it, or with a modifier that no key gives.
std::optional<ModifierMask> modifierMaskOf(const ModifierMap& map, std::uint32_t modifiers);

/// `mask` by itself and with each set of locks that may be on: what a passive grab has to name.
std::vector<ModifierMask> lockVariantsOf(const ModifierMap& map, ModifierMask mask);

/// Whether a key event in the state `state` has exactly the modifiers of `mask`, whatever locks,
/// mouse buttons and layout groups are on.
bool hasModifiers(const ModifierMap& map, std::uint16_t state, ModifierMask mask);

}  // namespace platform::x11
