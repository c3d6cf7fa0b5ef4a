#include "platform/x11/modifier_map.h"

#include <algorithm>
#include <array>
#include <initializer_list>

#include "shortcuts/hot_key_service.h"

namespace platform::x11 {

namespace {

// From X11/keysymdef.h.
constexpr xcb_keysym_t numLockSymbol = 0xFF7F;
constexpr xcb_keysym_t scrollLockSymbol = 0xFF14;
constexpr xcb_keysym_t leftAltSymbol = 0xFFE9;
constexpr xcb_keysym_t rightAltSymbol = 0xFFEA;
constexpr xcb_keysym_t leftSuperSymbol = 0xFFEB;
constexpr xcb_keysym_t rightSuperSymbol = 0xFFEC;

constexpr std::size_t modifierCount = 8;
constexpr std::size_t firstFreeModifier = 3;
constexpr ModifierMask allModifiers = 0xFF;

std::span<const xcb_keysym_t> symbolsOf(const KeyboardTables& tables, xcb_keycode_t keycode) {
    if (keycode < tables.firstKeycode) {
        return {};
    }
    const std::size_t first =
        static_cast<std::size_t>(keycode - tables.firstKeycode) * tables.keysymsPerKeycode;
    if (first + tables.keysymsPerKeycode > tables.keysyms.size()) {
        return {};
    }
    return tables.keysyms.subspan(first, tables.keysymsPerKeycode);
}

/// The first modifier bit with a key that carries one of `symbols` on any of its levels: layouts
/// put Alt and Meta, or Num Lock and the pointer keys, on one key.
ModifierMask modifierOf(const KeyboardTables& tables, std::initializer_list<xcb_keysym_t> symbols) {
    const std::size_t rowLength = tables.modifierKeycodes.size() / modifierCount;
    for (std::size_t modifier = firstFreeModifier; modifier < modifierCount; ++modifier) {
        for (const auto keycode :
             tables.modifierKeycodes.subspan(modifier * rowLength, rowLength)) {
            const auto carried = symbolsOf(tables, keycode);
            if (std::ranges::find_first_of(carried, symbols) != carried.end()) {
                return static_cast<ModifierMask>(1U << modifier);
            }
        }
    }
    return 0;
}

ModifierMask locksOf(const ModifierMap& map) {
    return static_cast<ModifierMask>(XCB_MOD_MASK_LOCK | map.numLock | map.scrollLock);
}

}  // namespace

ModifierMap modifierMapOf(const KeyboardTables& tables) {
    return {.command = modifierOf(tables, {leftSuperSymbol, rightSuperSymbol}),
            .option = modifierOf(tables, {leftAltSymbol, rightAltSymbol}),
            .numLock = modifierOf(tables, {numLockSymbol}),
            .scrollLock = modifierOf(tables, {scrollLockSymbol})};
}

std::optional<ModifierMask> modifierMaskOf(const ModifierMap& map, std::uint32_t modifiers) {
    struct Translation {
        std::uint32_t stored;
        ModifierMask mask;
    };
    const std::array<Translation, 4> translations{{
        {shortcuts::commandModifier, map.command},
        {shortcuts::shiftModifier, XCB_MOD_MASK_SHIFT},
        {shortcuts::optionModifier, map.option},
        {shortcuts::controlModifier, XCB_MOD_MASK_CONTROL},
    }};
    ModifierMask mask = 0;
    for (const Translation& translation : translations) {
        if ((modifiers & translation.stored) == 0) {
            continue;
        }
        if (translation.mask == 0) {
            return std::nullopt;
        }
        mask = static_cast<ModifierMask>(mask | translation.mask);
        modifiers &= ~translation.stored;
    }
    return modifiers == 0 ? std::optional(mask) : std::nullopt;
}

std::vector<ModifierMask> lockVariantsOf(const ModifierMap& map, ModifierMask mask) {
    const auto locks = static_cast<ModifierMask>(locksOf(map) & ~mask);
    std::vector<ModifierMask> variants;
    // Counts through every subset of the lock bits, the empty one first.
    ModifierMask subset = 0;
    do {
        variants.push_back(static_cast<ModifierMask>(mask | subset));
        subset = static_cast<ModifierMask>((subset - locks) & locks);
    } while (subset != 0);
    return variants;
}

bool hasModifiers(const ModifierMap& map, std::uint16_t state, ModifierMask mask) {
    const auto ignored = static_cast<ModifierMask>(locksOf(map) & ~mask);
    return (state & allModifiers & ~ignored) == mask;
}

}  // namespace platform::x11
