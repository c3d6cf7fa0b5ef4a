#include "platform/x11/alt_modifier.h"

namespace platform::x11 {

namespace {

// From keysymdef.h.
constexpr xcb_keysym_t altLeft = 0xFFE9;
constexpr xcb_keysym_t altRight = 0xFFEA;
constexpr int modifierCount = 8;

bool isAltKey(const xcb_get_keyboard_mapping_reply_t& keys, int index) {
    const auto* symbols = xcb_get_keyboard_mapping_keysyms(&keys);
    const int length = xcb_get_keyboard_mapping_keysyms_length(&keys);
    const int first = index * keys.keysyms_per_keycode;
    for (int i = first; index >= 0 && i < first + keys.keysyms_per_keycode && i < length; ++i) {
        if (symbols[i] == altLeft || symbols[i] == altRight) {
            return true;
        }
    }
    return false;
}

}  // namespace

AltModifier::AltModifier(Connection& connection)
    : connection_(connection), modifiers_(xcb_get_modifier_mapping(connection.get())) {
    const auto* setup = xcb_get_setup(connection.get());
    keys_ = xcb_get_keyboard_mapping(
        connection.get(), setup->min_keycode,
        static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1));
}

AltModifier::~AltModifier() {
    if (!mask_) {
        xcb_discard_reply(connection_.get(), modifiers_.sequence);
        xcb_discard_reply(connection_.get(), keys_.sequence);
    }
}

bool AltModifier::isHeld(std::uint16_t state) {
    if (!mask_) {
        mask_ = read();
    }
    return (state & *mask_) != 0;
}

std::uint16_t AltModifier::read() {
    const Reply<xcb_get_modifier_mapping_reply_t> modifiers(
        xcb_get_modifier_mapping_reply(connection_.get(), modifiers_, nullptr));
    const Reply<xcb_get_keyboard_mapping_reply_t> keys(
        xcb_get_keyboard_mapping_reply(connection_.get(), keys_, nullptr));
    std::uint16_t mask = 0;
    if (modifiers && keys) {
        const auto* keycodes = xcb_get_modifier_mapping_keycodes(modifiers.get());
        const int perModifier = modifiers->keycodes_per_modifier;
        const int first = xcb_get_setup(connection_.get())->min_keycode;
        for (int i = 0; i < modifierCount * perModifier; ++i) {
            if (isAltKey(*keys, keycodes[i] - first)) {
                mask =
                    static_cast<std::uint16_t>(mask | 1U << static_cast<unsigned>(i / perModifier));
            }
        }
    }
    return mask != 0 ? mask : static_cast<std::uint16_t>(XCB_MOD_MASK_1);
}

}  // namespace platform::x11
