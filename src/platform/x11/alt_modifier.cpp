#include "platform/x11/alt_modifier.h"

#include <algorithm>

#include "platform/x11/modifier_map.h"

namespace platform::x11 {

namespace {

template <typename Item>
std::span<const Item> spanOf(const Item* items, int count) {
    return {items, static_cast<std::size_t>(std::max(count, 0))};
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
    if (!modifiers || !keys) {
        return 0;
    }
    return modifierMapOf({spanOf(xcb_get_modifier_mapping_keycodes(modifiers.get()),
                                 xcb_get_modifier_mapping_keycodes_length(modifiers.get())),
                          xcb_get_setup(connection_.get())->min_keycode, keys->keysyms_per_keycode,
                          spanOf(xcb_get_keyboard_mapping_keysyms(keys.get()),
                                 xcb_get_keyboard_mapping_keysyms_length(keys.get()))})
        .option;
}

}  // namespace platform::x11
