#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "platform/x11/connection.h"

namespace platform::x11 {

/// The input focus of one opening of the overlay: taken for its windows, given back to whoever had
/// it when the last of them goes, unless somebody else has taken it meanwhile. Main thread.
///
/// Taken only when it is needed: a window manager shows the window that loses it as inactive, and
/// then a picture of the live screen is not what the person saw. Who holds the keyboard has every
/// key without it. The windows are none of the window manager's, which then leaves the focus where
/// it is put.
class OverlayFocus {
  public:
    /// Whether keys would go to another program if the focus stayed where it is.
    using IsNeeded = std::function<bool()>;

    /// `isNeeded` is asked for each window; an empty one stands for always.
    OverlayFocus(Connection& connection, IsNeeded isNeeded);

    /// Gives the keys to a window that is mapped, if it is needed. One round trip.
    void take(xcb_window_t window);
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
    IsNeeded isNeeded_;
    /// Every window of this opening that was ever given the focus.
    std::vector<xcb_window_t> windows_;
    std::size_t openWindows_ = 0;
    std::optional<Holder> previous_;
};

}  // namespace platform::x11
