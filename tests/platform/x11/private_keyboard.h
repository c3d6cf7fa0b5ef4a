#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "desktop/input_driver.h"
#include "desktop/x_client.h"
#include "desktop/x_server.h"
#include "doubles/manual_main_queue.h"
#include "platform/x11/connection.h"
#include "platform/x11/x11_keyboard.h"

namespace test {

/// A private X server with the keyboard ports on it, and hands on the keys.
class PrivateKeyboard {
  public:
    PrivateKeyboard();
    ~PrivateKeyboard();
    PrivateKeyboard(const PrivateKeyboard&) = delete;
    PrivateKeyboard& operator=(const PrivateKeyboard&) = delete;

    [[nodiscard]] shortcuts::HotKeyService& hotKeys() { return keyboard_->hotKeys(); }
    [[nodiscard]] overlay::KeyboardTap& tap() { return keyboard_->tap(); }
    [[nodiscard]] platform::x11::X11Keyboard& ports() { return *keyboard_; }
    [[nodiscard]] desktop::InputDriver& hands() { return *hands_; }
    [[nodiscard]] doubles::ManualMainQueue& queue() { return queue_; }
    [[nodiscard]] platform::x11::Connection& connection() { return *connection_; }
    [[nodiscard]] const std::string& displayName() const { return server_->displayName(); }

    /// Waits until the server has done everything that the ports asked for; they see nothing new.
    void synchronize();
    /// Lets the ports see everything that the server has done so far, and the server do what they
    /// ask for in answer.
    void settle();
    /// Settles until `condition` holds; false when it does not in time.
    bool settleUntil(const std::function<bool()>& condition);
    /// Runs a short program on the display and lets the ports see what it did.
    void run(const std::vector<std::string>& command);
    /// The keyboard ports go, as at the end of the program; the connection stays.
    void endKeyboard() { keyboard_.reset(); }

  private:
    std::filesystem::path directory_;
    std::unique_ptr<desktop::XServer> server_;
    std::unique_ptr<desktop::InputDriver> hands_;
    doubles::ManualMainQueue queue_;
    std::unique_ptr<platform::x11::Connection> connection_;
    std::unique_ptr<platform::x11::X11Keyboard> keyboard_;
};

/// Grabs of another program.
class OtherProgram {
  public:
    explicit OtherProgram(const std::string& displayName) : client_(displayName) {}

    [[nodiscard]] desktop::XClient& client() { return client_; }
    enum class Answer { granted, refused };
    Answer grabKey(std::uint8_t keycode, std::uint16_t modifiers);
    void ungrabKey(std::uint8_t keycode, std::uint16_t modifiers);
    Answer grabKeyboard();
    void ungrabKeyboard();

  private:
    desktop::XClient client_;
};

}  // namespace test
