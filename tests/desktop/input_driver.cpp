#include "desktop/input_driver.h"

#include <xcb/xtest.h>

#include <stdexcept>

namespace desktop {

InputDriver::InputDriver(const std::string& displayName) : client_(displayName) {}

void InputDriver::fake(std::uint8_t type, std::uint8_t detail, Place place) {
    xcb_test_fake_input(client_.get(), type, detail, XCB_CURRENT_TIME, client_.root(),
                        static_cast<std::int16_t>(place.x), static_cast<std::int16_t>(place.y), 0);
    client_.synchronize();
}

void InputDriver::press(std::uint8_t keyCode) {
    fake(XCB_KEY_PRESS, keyCode);
}

void InputDriver::release(std::uint8_t keyCode) {
    fake(XCB_KEY_RELEASE, keyCode);
}

void InputDriver::chord(const std::vector<std::uint8_t>& keyCodes) {
    for (const std::uint8_t keyCode : keyCodes) {
        press(keyCode);
    }
    for (auto keyCode = keyCodes.rbegin(); keyCode != keyCodes.rend(); ++keyCode) {
        release(*keyCode);
    }
}

std::uint8_t InputDriver::keyCodeOf(std::uint32_t keysym) const {
    const xcb_setup_t* setup = xcb_get_setup(client_.get());
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const Reply<xcb_get_keyboard_mapping_reply_t> mapping(xcb_get_keyboard_mapping_reply(
        client_.get(), xcb_get_keyboard_mapping(client_.get(), setup->min_keycode, count),
        nullptr));
    if (mapping) {
        const xcb_keysym_t* keysyms = xcb_get_keyboard_mapping_keysyms(mapping.get());
        for (int index = 0; index < count; ++index) {
            if (keysyms[index * mapping->keysyms_per_keycode] == keysym) {
                return static_cast<std::uint8_t>(setup->min_keycode + index);
            }
        }
    }
    throw std::runtime_error("No key gives the keysym " + std::to_string(keysym) + ".");
}

void InputDriver::moveTo(Place place) {
    fake(XCB_MOTION_NOTIFY, 0, place);
}

void InputDriver::pressButton(std::uint8_t button) {
    fake(XCB_BUTTON_PRESS, button);
}

void InputDriver::releaseButton(std::uint8_t button) {
    fake(XCB_BUTTON_RELEASE, button);
}

void InputDriver::click(Place place, std::uint8_t button) {
    moveTo(place);
    pressButton(button);
    releaseButton(button);
}

void InputDriver::moveInSteps(Place from, Place to, int steps) {
    for (int step = 1; step <= steps; ++step) {
        moveTo({from.x + (to.x - from.x) * step / steps, from.y + (to.y - from.y) * step / steps});
    }
}

void InputDriver::drag(Place from, Place to, int steps) {
    moveTo(from);
    pressButton();
    moveInSteps(from, to, steps);
    releaseButton();
}

}  // namespace desktop
