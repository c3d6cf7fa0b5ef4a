#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <utility>
#include <vector>

#include "desktop/x_client.h"
#include "platform/x11/private_keyboard.h"
#include "platform/x11/x11_key_monitor.h"

namespace test {

/// A window of this program as a toolkit would have it, on a connection of its own whose events go
/// to the key monitor first.
class MonitoredWindow {
  public:
    /// The window is on the screen and has the input focus.
    explicit MonitoredWindow(PrivateKeyboard& keyboard);
    ~MonitoredWindow();
    MonitoredWindow(const MonitoredWindow&) = delete;
    MonitoredWindow& operator=(const MonitoredWindow&) = delete;

    [[nodiscard]] platform::x11::X11KeyMonitor& monitor() { return monitor_; }
    void takeFocus();
    /// Lets the monitor and the window see everything that the server has done so far, and the
    /// server do what they ask for in answer.
    void settle();

    /// The toolkit takes the keyboard for a menu that pops up, and lets it go with the menu.
    void openAndCloseMenu();

    /// The key codes whose press or release reached the window since the last call.
    std::vector<std::uint8_t> takePresses() { return std::exchange(presses_, {}); }
    std::vector<std::uint8_t> takeReleases() { return std::exchange(releases_, {}); }
    /// What the toolkit makes of the events about the focus.
    [[nodiscard]] bool hasFocus() const { return hasFocus_; }

  private:
    void handle(const xcb_generic_event_t& event);

    PrivateKeyboard& keyboard_;
    desktop::XClient toolkit_;
    xcb_window_t window_;
    platform::x11::X11KeyMonitor monitor_;
    std::vector<std::uint8_t> presses_;
    std::vector<std::uint8_t> releases_;
    bool hasFocus_ = false;
};

}  // namespace test
