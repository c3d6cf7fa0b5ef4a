#pragma once

#include <xcb/xcb.h>

#include <vector>

#include "platform/x11/connection.h"

namespace platform::x11 {

/// Keeps the overlay's windows above all others while they are open. Main thread.
///
/// No window manager looks after override-redirect windows, so another one that raises itself, or
/// a menu that opens, would cover them. After each such change the server is asked to raise those
/// of the overlay that are covered. Somebody who always raises himself again wins after a while.
class OverlayStack {
  public:
    explicit OverlayStack(Connection& connection);
    OverlayStack(const OverlayStack&) = delete;
    OverlayStack& operator=(const OverlayStack&) = delete;

    /// A window that was mapped on top.
    void add(xcb_window_t window);
    void remove(xcb_window_t window);

  private:
    Connection::EventVerdict handle(const xcb_generic_event_t& event);
    void noteChange(xcb_window_t window);
    [[nodiscard]] bool isOurs(xcb_window_t window) const;

    Connection& connection_;
    std::vector<xcb_window_t> windows_;
    /// How often the windows were really raised since the first of them was opened.
    int raises_ = 0;
    Connection::RootSelection rootEvents_;
    Connection::Subscription subscription_;
};

}  // namespace platform::x11
