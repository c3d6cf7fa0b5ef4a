#include "platform/x11/private_keyboard.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <stdexcept>

#include "desktop/process.h"
#include "desktop/wait.h"

namespace test {

namespace {

std::filesystem::path makeDirectory() {
    std::string name = (std::filesystem::temp_directory_path() / "lumaframe-keys-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("No directory for an X server could be made.");
    }
    return name;
}

}  // namespace

PrivateKeyboard::PrivateKeyboard()
    : directory_(makeDirectory()),
      server_(std::make_unique<desktop::XServer>(directory_,
                                                 std::vector{desktop::Output{.width = 640}})),
      hands_(std::make_unique<desktop::InputDriver>(displayName())) {
    auto connection = platform::x11::Connection::open(displayName());
    if (!connection) {
        throw std::runtime_error(connection.error().sentence);
    }
    connection_ = std::move(connection.value());
    auto keyboard = platform::x11::X11Keyboard::create(*connection_, queue_);
    if (!keyboard) {
        throw std::runtime_error(keyboard.error().sentence);
    }
    keyboard_ = std::move(keyboard.value());
}

PrivateKeyboard::~PrivateKeyboard() {
    keyboard_.reset();
    connection_.reset();
    hands_.reset();
    server_.reset();
    queue_.runAll();
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
}

void PrivateKeyboard::synchronize() {
    const desktop::Reply<xcb_get_input_focus_reply_t> reply(xcb_get_input_focus_reply(
        connection_->get(), xcb_get_input_focus(connection_->get()), nullptr));
}

void PrivateKeyboard::settle() {
    // The server sends events before a reply that it makes later, so after one round trip every
    // event of the past has arrived.
    synchronize();
    connection_->dispatchPendingEvents();
    queue_.runAll();
    synchronize();
}

bool PrivateKeyboard::settleUntil(const std::function<bool()>& condition) {
    return desktop::waitUntil([&] {
        settle();
        return condition();
    });
}

void PrivateKeyboard::run(const std::vector<std::string>& command) {
    desktop::runToEnd({.command = command,
                       .environment = {{"PATH", "/usr/bin:/bin"}, {"DISPLAY", displayName()}},
                       .outputFile = directory_ / "command"});
    settle();
}

OtherProgram::Answer OtherProgram::grabKey(std::uint8_t keycode, std::uint16_t modifiers) {
    const auto cookie = xcb_grab_key_checked(client_.get(), 0, client_.root(), modifiers, keycode,
                                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const desktop::Reply<xcb_generic_error_t> error(xcb_request_check(client_.get(), cookie));
    return error ? Answer::refused : Answer::granted;
}

void OtherProgram::ungrabKey(std::uint8_t keycode, std::uint16_t modifiers) {
    xcb_ungrab_key(client_.get(), keycode, client_.root(), modifiers);
    client_.synchronize();
}

OtherProgram::Answer OtherProgram::grabKeyboard() {
    const desktop::Reply<xcb_grab_keyboard_reply_t> reply(xcb_grab_keyboard_reply(
        client_.get(),
        xcb_grab_keyboard(client_.get(), 0, client_.root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC,
                          XCB_GRAB_MODE_ASYNC),
        nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS ? Answer::granted : Answer::refused;
}

void OtherProgram::ungrabKeyboard() {
    xcb_ungrab_keyboard(client_.get(), XCB_CURRENT_TIME);
    client_.synchronize();
}

}  // namespace test
