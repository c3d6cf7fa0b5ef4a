#include "platform/x11/monitored_window.h"

#include "desktop/wait.h"

namespace test {

MonitoredWindow::MonitoredWindow(PrivateKeyboard& keyboard)
    : keyboard_(keyboard),
      toolkit_(keyboard.displayName()),
      window_(xcb_generate_id(toolkit_.get())),
      monitor_(toolkit_.get(), keyboard.ports().mapping(), keyboard.queue()) {
    keyboard_.ports().beforeGrab([this] { monitor_.letGo(); });
    const std::uint32_t values[] = {
        1, XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE | XCB_EVENT_MASK_FOCUS_CHANGE};
    xcb_create_window(toolkit_.get(), XCB_COPY_FROM_PARENT, window_, toolkit_.root(), 0, 0, 200,
                      100, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    xcb_map_window(toolkit_.get(), window_);
    takeFocus();
}

MonitoredWindow::~MonitoredWindow() {
    keyboard_.ports().beforeGrab({});
}

void MonitoredWindow::takeFocus() {
    xcb_set_input_focus(toolkit_.get(), XCB_INPUT_FOCUS_POINTER_ROOT, window_, XCB_CURRENT_TIME);
    settle();
}

void MonitoredWindow::openAndCloseMenu() {
    xcb_grab_keyboard(toolkit_.get(), 0, toolkit_.root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC,
                      XCB_GRAB_MODE_ASYNC);
    settle();
    xcb_ungrab_keyboard(toolkit_.get(), XCB_CURRENT_TIME);
    settle();
}

void MonitoredWindow::settle() {
    // Twice: what the first round has asked of the server can have events for an answer.
    for (int round = 0; round < 2; ++round) {
        toolkit_.synchronize();
        while (const auto event = toolkit_.pollEvent()) {
            handle(*event);
        }
        keyboard_.settle();
    }
}

void MonitoredWindow::handle(const xcb_generic_event_t& event) {
    using platform::x11::Connection;
    if (monitor_.handle(event) == Connection::EventVerdict::consumed) {
        return;
    }
    switch (event.response_type) {
        case XCB_KEY_PRESS:
            presses_.push_back(reinterpret_cast<const xcb_key_press_event_t&>(event).detail);
            break;
        case XCB_KEY_RELEASE:
            releases_.push_back(reinterpret_cast<const xcb_key_release_event_t&>(event).detail);
            break;
        case XCB_FOCUS_IN:
            hasFocus_ = true;
            break;
        case XCB_FOCUS_OUT:
            hasFocus_ = false;
            break;
        default:
            break;
    }
}

}  // namespace test
