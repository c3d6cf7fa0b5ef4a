#include "platform/x11/keyboard_mapping.h"

#include <optional>
#include <utility>

#include "platform/x11/xkb_client.h"

namespace platform::x11 {

namespace {

std::optional<ModifierMap> readModifiers(Connection& connection) {
    auto* server = connection.get();
    const auto* setup = xcb_get_setup(server);
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const auto modifierCookie = xcb_get_modifier_mapping(server);
    const auto keyboardCookie = xcb_get_keyboard_mapping(server, setup->min_keycode, count);
    const Reply<xcb_get_modifier_mapping_reply_t> modifiers(
        xcb_get_modifier_mapping_reply(server, modifierCookie, nullptr));
    const Reply<xcb_get_keyboard_mapping_reply_t> keyboard(
        xcb_get_keyboard_mapping_reply(server, keyboardCookie, nullptr));
    if (!modifiers || !keyboard) {
        return std::nullopt;
    }
    return modifierMapOf(
        {.modifierKeycodes = {xcb_get_modifier_mapping_keycodes(modifiers.get()),
                              static_cast<std::size_t>(
                                  xcb_get_modifier_mapping_keycodes_length(modifiers.get()))},
         .firstKeycode = setup->min_keycode,
         .keysymsPerKeycode = keyboard->keysyms_per_keycode,
         .keysyms = {
             xcb_get_keyboard_mapping_keysyms(keyboard.get()),
             static_cast<std::size_t>(xcb_get_keyboard_mapping_keysyms_length(keyboard.get()))}});
}

}  // namespace

base::Result<std::unique_ptr<KeyboardMapping>> KeyboardMapping::create(Connection& connection,
                                                                       base::MainQueue& mainQueue) {
    // First the wish for events, then the mapping: a change in between is told.
    const std::uint8_t xkbEvent = becomeXkbClient(connection);
    const auto modifiers = readModifiers(connection);
    if (!modifiers) {
        return base::Error{base::ErrorKind::unavailable,
                           "The X server does not tell the keyboard mapping."};
    }
    std::unique_ptr<KeyboardMapping> mapping(
        new KeyboardMapping(connection, mainQueue, *modifiers));
    mapping->xkbEvent_ = xkbEvent;
    return mapping;
}

KeyboardMapping::KeyboardMapping(Connection& connection, base::MainQueue& mainQueue,
                                 ModifierMap modifiers)
    : connection_(connection),
      mainQueue_(mainQueue),
      modifiers_(modifiers),
      subscription_(connection.subscribe(
          [this](const xcb_generic_event_t& event) { return handle(event); })) {}

bool KeyboardMapping::hasKeycode(xcb_keycode_t keycode) const {
    const auto* setup = xcb_get_setup(connection_.get());
    return keycode >= setup->min_keycode && keycode <= setup->max_keycode;
}

void KeyboardMapping::onChange(std::function<void()> listener) {
    listener_ = std::move(listener);
}

Connection::EventVerdict KeyboardMapping::handle(const xcb_generic_event_t& event) {
    const auto type = static_cast<std::uint8_t>(event.response_type & 0x7F);
    const bool isCoreChange = type == XCB_MAPPING_NOTIFY;
    const bool isXkbChange = xkbEvent_ != 0 && type == xkbEvent_ && isXkbMappingChange(event);
    if (isCoreChange || isXkbChange) {
        postRefresh();
    }
    return Connection::EventVerdict::pass;
}

void KeyboardMapping::postRefresh() {
    if (refresh_ == Refresh::posted) {
        return;
    }
    refresh_ = Refresh::posted;
    mainQueue_.post(alive_.guard([this] { refresh(); }));
}

void KeyboardMapping::refresh() {
    refresh_ = Refresh::none;
    const auto modifiers = readModifiers(connection_);
    if (!modifiers || *modifiers == modifiers_) {
        return;
    }
    modifiers_ = *modifiers;
    if (listener_) {
        listener_();
    }
}

}  // namespace platform::x11
