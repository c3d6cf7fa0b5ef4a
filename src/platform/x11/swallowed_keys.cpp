#include "platform/x11/swallowed_keys.h"

namespace platform::x11 {

bool SwallowedKeys::isRepeat(xcb_keycode_t keycode, xcb_timestamp_t time) const {
    return down_.test(keycode) || (hasReleaseTime_.test(keycode) && releaseTime_[keycode] == time);
}

bool SwallowedKeys::release(xcb_keycode_t keycode, xcb_timestamp_t time) {
    if (!down_.test(keycode)) {
        return false;
    }
    down_.reset(keycode);
    released_.set(keycode);
    hasReleaseTime_.set(keycode);
    releaseTime_[keycode] = time;
    return true;
}

void SwallowedKeys::settle(const std::bitset<256>& physicallyDown) {
    down_ |= released_ & physicallyDown;
    released_.reset();
}

void SwallowedKeys::clear() {
    down_.reset();
    released_.reset();
    hasReleaseTime_.reset();
}

}  // namespace platform::x11
