#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/x11/connection.h"

namespace platform::x11 {

/// The input focus of one opening of the overlay: taken for its windows, given back to whoever had
/// it when the last of them goes, unless somebody else has taken it meanwhile. Main thread.
///
/// Taken only when the keyboard could not be held: a window manager shows the window that loses the
/// focus as inactive, and then a picture of the live screen is not what the person saw. Who holds
/// the keyboard has every key without it. The windows are none of the window manager's, which then
/// leaves the focus where it is put.
class OverlayFocus {
  public:
    explicit OverlayFocus(Connection& connection);

    /// A window that is mapped is the one for the keys from here on.
    void makeKey(xcb_window_t window);
    /// Gives the focus to the window that was made key last; nothing without one. One round trip.
    void take();
    /// The window is about to go.
    void release(xcb_window_t window);

  private:
    struct Holder {
        xcb_window_t window = XCB_WINDOW_NONE;
        std::uint8_t revertTo = XCB_INPUT_FOCUS_POINTER_ROOT;
    };

    [[nodiscard]] std::optional<Holder> holderOf(xcb_get_input_focus_cookie_t cookie) const;
    [[nodiscard]] bool isOurs(xcb_window_t window) const;

    Connection& connection_;
    /// Every window of this opening, the one made key last at the end.
    std::vector<xcb_window_t> windows_;
    std::size_t openWindows_ = 0;
    /// Who had the focus before it was taken.
    std::optional<Holder> previous_;
};

}  // namespace platform::x11
