#include "platform/x11/key_router.h"

#include <utility>
#include <vector>

#include "platform/x11/key_map.h"

namespace platform::x11 {

KeyRouter::KeyRouter(Connection& connection, const KeyboardMapping& mapping)
    : connection_(connection),
      mapping_(mapping),
      subscription_(connection.subscribe(
          [this](const xcb_generic_event_t& event) { return handle(event); })) {}

KeyRouter::~KeyRouter() {
    if (grab_ == Grab::active || grab_ == Grab::releasing) {
        giveBack();
    }
}

void KeyRouter::onHotKey(HotKeyListener listener) {
    hotKeyListener_ = std::move(listener);
}

base::Result<KeyRouter::TapID> KeyRouter::addTap(overlay::KeyboardTap::Handler handler) {
    if (!takeKeyboard()) {
        return base::Error{base::ErrorKind::unavailable,
                           "Another program holds the keyboard at the moment."};
    }
    // What came before the tap is sent with it, also when the keyboard was ours already.
    connection_.flush();
    taps_.emplace(++lastTap_, std::move(handler));
    return TapID{lastTap_};
}

void KeyRouter::removeTap(TapID tap) {
    taps_.erase(tap);
}

void KeyRouter::giveBackWithoutTaps() {
    if (grab_ == Grab::active && taps_.empty()) {
        giveBackUnlessHotKeyHeld();
    }
}

bool KeyRouter::isKeyboardAvailable() {
    if (grab_ != Grab::none) {
        return true;
    }
    if (grab() != XCB_GRAB_STATUS_SUCCESS) {
        return false;
    }
    giveBack();
    return true;
}

Connection::EventVerdict KeyRouter::handle(const xcb_generic_event_t& event) {
    // Compared whole: the type of an event that another program made up has one more bit.
    if (event.response_type != XCB_KEY_PRESS && event.response_type != XCB_KEY_RELEASE) {
        return Connection::EventVerdict::pass;
    }
    // Presses and releases have the same fields.
    const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(event);
    if (key.event != connection_.root()) {
        // A window of the overlay has the input focus; it answers its keys itself.
        return Connection::EventVerdict::pass;
    }
    const bool isLate = isFromEndedGrab(event);
    if (event.response_type == XCB_KEY_RELEASE) {
        handleRelease(key);
    } else {
        if (grab_ == Grab::none && !isLate) {
            grab_ = Grab::passive;
            activatingKey_ = key.detail;
        }
        handlePress(key);
        if (isLate) {
            // Its release may have come when the keyboard was nobody's, and then not to us.
            forgetKeysThatAreUp();
        }
    }
    return Connection::EventVerdict::consumed;
}

void KeyRouter::handlePress(const xcb_key_press_event_t& event) {
    const auto kind = heldKeys_.press(event.detail, event.time);
    if (kind == HeldKeys::Press::repeatOfHotKey) {
        return;
    }
    if (kind == HeldKeys::Press::first) {
        if (const auto hotKey = hotKeys_.find(mapping_.modifiers(), event.detail, event.state)) {
            heldKeys_.markHotKey(event.detail);
            if (const auto listener = hotKeyListener_) {
                listener(*hotKey);
            }
            return;
        }
    }
    report(event.detail);
}

void KeyRouter::handleRelease(const xcb_key_release_event_t& event) {
    heldKeys_.release(event.detail);
    switch (grab_) {
        case Grab::none:
        case Grab::active:
            break;
        case Grab::passive:
            if (event.detail == activatingKey_) {
                endPassiveGrab();
            }
            break;
        case Grab::releasing:
            if (!heldKeys_.isHotKeyHeld()) {
                giveBack();
            }
            break;
    }
}

void KeyRouter::report(xcb_keycode_t keycode) {
    const auto code = virtualKeyCodeOf(keycode);
    if (code && isModifierKey(*code)) {
        return;
    }
    const overlay::TapEvent event{overlay::TapEventType::keyDown,
                                  code.value_or(overlay::unknownKeyCode)};
    // By number and with a copy: a handler may end any tap, its own too.
    std::vector<TapID> newestFirst;
    for (const auto& [tap, handler] : taps_) {
        newestFirst.push_back(tap);
    }
    for (const TapID tap : newestFirst) {
        const auto entry = taps_.find(tap);
        if (entry == taps_.end()) {
            continue;
        }
        const auto handler = entry->second;
        if (handler(event) == overlay::TapVerdict::swallow) {
            return;
        }
    }
    // A press that every tap lets pass reaches nobody: the server gave it to the grab alone.
}

void KeyRouter::endPassiveGrab() {
    // The server ended the grab by itself. Another hot key that was pressed meanwhile would fire
    // again with its next repeat, so the keyboard stays ours until that key is up as well.
    if (heldKeys_.isHotKeyHeld() && grab() == XCB_GRAB_STATUS_SUCCESS) {
        giveBackUnlessHotKeyHeld();
        return;
    }
    grab_ = Grab::none;
    heldKeys_.releaseAll();
}

void KeyRouter::giveBackUnlessHotKeyHeld() {
    if (heldKeys_.isHotKeyHeld()) {
        forgetKeysThatAreUp();
    }
    if (heldKeys_.isHotKeyHeld()) {
        grab_ = Grab::releasing;
    } else {
        giveBack();
    }
}

void KeyRouter::giveBack() {
    lastUngrab_ = xcb_ungrab_keyboard(connection_.get(), XCB_CURRENT_TIME).sequence;
    connection_.flush();
    grab_ = Grab::none;
    heldKeys_.releaseAll();
}

bool KeyRouter::isFromEndedGrab(const xcb_generic_event_t& event) const {
    // Sequence numbers wrap around; the sign of the difference does not notice.
    return static_cast<std::int32_t>(event.full_sequence - lastUngrab_) < 0;
}

bool KeyRouter::takeKeyboard() {
    const bool isOurs = grab_ == Grab::active || grab_ == Grab::releasing;
    if (isOurs || grab() == XCB_GRAB_STATUS_SUCCESS) {
        grab_ = Grab::active;
        return true;
    }
    return false;
}

std::uint8_t KeyRouter::grab() {
    if (beforeGrab_) {
        beforeGrab_();
    }
    const auto cookie =
        xcb_grab_keyboard(connection_.get(), 0, connection_.root(), XCB_CURRENT_TIME,
                          XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const Reply<xcb_grab_keyboard_reply_t> reply(
        xcb_grab_keyboard_reply(connection_.get(), cookie, nullptr));
    return reply ? reply->status : std::uint8_t{XCB_GRAB_STATUS_NOT_VIEWABLE};
}

void KeyRouter::forgetKeysThatAreUp() {
    const auto cookie = xcb_query_keymap(connection_.get());
    const Reply<xcb_query_keymap_reply_t> reply(
        xcb_query_keymap_reply(connection_.get(), cookie, nullptr));
    std::bitset<256> down;
    for (std::size_t keycode = 0; reply && keycode < down.size(); ++keycode) {
        down.set(keycode, ((reply->keys[keycode / 8] >> (keycode % 8)) & 1) != 0);
    }
    heldKeys_.keepOnly(down);
}

}  // namespace platform::x11
