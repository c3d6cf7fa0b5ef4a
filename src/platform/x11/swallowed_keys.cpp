#include "platform/x11/swallowed_keys.h"

namespace platform::x11 {

bool SwallowedKeys::isRepeat(const xcb_key_press_event_t& event, std::uint32_t fullSequence) const {
    if (down_.test(event.detail)) {
        return true;
    }
    if (!wasReleased_.test(event.detail) || releaseTime_[event.detail] != event.time) {
        return false;
    }
    // A press that the server made after it said that the key is up is a new one, however quick.
    // Sequence numbers wrap around; the sign of the difference does not notice.
    const bool isOlder =
        settledSequence_ && static_cast<std::int32_t>(fullSequence - *settledSequence_) < 0;
    return released_.test(event.detail) || isOlder;
}

bool SwallowedKeys::release(xcb_keycode_t keycode, xcb_timestamp_t time) {
    if (!down_.test(keycode)) {
        return false;
    }
    down_.reset(keycode);
    released_.set(keycode);
    wasReleased_.set(keycode);
    releaseTime_[keycode] = time;
    return true;
}

void SwallowedKeys::settle(const std::bitset<256>& physicallyDown, std::uint32_t sequence) {
    down_ |= released_ & physicallyDown;
    released_.reset();
    settledSequence_ = sequence;
}

void SwallowedKeys::clear() {
    down_.reset();
    released_.reset();
    wasReleased_.reset();
}

}  // namespace platform::x11
