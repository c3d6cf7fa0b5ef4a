#include "platform/x11/held_keys.h"

namespace platform::x11 {

namespace {

// Desktops let the first repeat wait for two seconds at most, the later ones far less.
constexpr xcb_timestamp_t longestRepeatInterval = 3000;

}  // namespace

HeldKeys::Press HeldKeys::press(xcb_keycode_t keycode, xcb_timestamp_t time) {
    // The server's clock wraps around after 49 days; unsigned differences do not notice.
    const bool isLate = time - lastPress_.at(keycode) > longestRepeatInterval;
    lastPress_.at(keycode) = time;
    if (!down_.test(keycode) || isLate) {
        down_.set(keycode);
        hotKeys_.reset(keycode);
        return Press::first;
    }
    return hotKeys_.test(keycode) ? Press::repeatOfHotKey : Press::repeat;
}

void HeldKeys::release(xcb_keycode_t keycode) {
    down_.reset(keycode);
    hotKeys_.reset(keycode);
}

void HeldKeys::releaseAll() {
    down_.reset();
    hotKeys_.reset();
}

void HeldKeys::keepOnly(const std::bitset<256>& down) {
    down_ &= down;
    hotKeys_ &= down;
}

}  // namespace platform::x11
