#include "latency/input_burst.h"

#include <xcb/xtest.h>

#include "latency/monotonic.h"

namespace latency {

InputBurst::InputBurst(const std::string& displayName) : client_(displayName) {}

InputBurst& InputBurst::fake(std::uint8_t type, std::uint8_t detail, desktop::Place place) {
    xcb_test_fake_input(client_.get(), type, detail, XCB_CURRENT_TIME, client_.root(),
                        static_cast<std::int16_t>(place.x), static_cast<std::int16_t>(place.y), 0);
    return *this;
}

InputBurst& InputBurst::press(std::uint8_t keyCode) {
    return fake(XCB_KEY_PRESS, keyCode);
}

InputBurst& InputBurst::release(std::uint8_t keyCode) {
    return fake(XCB_KEY_RELEASE, keyCode);
}

InputBurst& InputBurst::chord(const std::vector<std::uint8_t>& keyCodes) {
    for (const std::uint8_t keyCode : keyCodes) {
        press(keyCode);
    }
    for (auto keyCode = keyCodes.rbegin(); keyCode != keyCodes.rend(); ++keyCode) {
        release(*keyCode);
    }
    return *this;
}

InputBurst& InputBurst::moveTo(desktop::Place place) {
    return fake(XCB_MOTION_NOTIFY, 0, place);
}

InputBurst& InputBurst::pressButton() {
    return fake(XCB_BUTTON_PRESS, 1);
}

InputBurst& InputBurst::releaseButton() {
    return fake(XCB_BUTTON_RELEASE, 1);
}

double InputBurst::send() {
    const double at = now();
    xcb_flush(client_.get());
    return at;
}

}  // namespace latency
