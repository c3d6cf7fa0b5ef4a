#pragma once

#include <xcb/xcb.h>

#include <map>
#include <vector>

#include "overlay/pointer.h"
#include "platform/x11/connection.h"
#include "platform/x11/x11_displays.h"

struct xcb_cursor_context_t;

namespace platform::x11 {

/// The pointer over the overlay's windows, in the look of the user's cursor theme. Main thread; the
/// connection and the displays outlive it.
class X11Pointer final : public overlay::Pointer {
  public:
    X11Pointer(Connection& connection, X11Displays& displays);
    ~X11Pointer() override;
    X11Pointer(const X11Pointer&) = delete;
    X11Pointer& operator=(const X11Pointer&) = delete;

    void setCursor(overlay::Cursor cursor) override;
    [[nodiscard]] std::optional<base::Point> location() override;

    /// The window has the cursor of the moment from here on, and every later one.
    void addWindow(xcb_window_t window);
    void removeWindow(xcb_window_t window);

  private:
    [[nodiscard]] xcb_cursor_t find(overlay::Cursor cursor);
    [[nodiscard]] xcb_cursor_t load(overlay::Cursor cursor);
    void show(xcb_window_t window);

    Connection& connection_;
    X11Displays& displays_;
    xcb_cursor_context_t* context_ = nullptr;
    overlay::Cursor cursor_ = overlay::Cursor::arrow;
    std::map<overlay::Cursor, xcb_cursor_t> loaded_;
    std::vector<xcb_window_t> windows_;
};

}  // namespace platform::x11
