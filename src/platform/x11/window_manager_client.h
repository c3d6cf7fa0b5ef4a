#pragma once

#include <xcb/xcb.h>

#include <string_view>

#include "app/application.h"
#include "app/windows.h"
#include "platform/x11/connection.h"

namespace platform::x11 {

/// What the program's own windows ask of the window manager. Main thread; without a window manager
/// the requests have no effect.
class WindowManagerClient {
  public:
    /// `connection` must outlive the object.
    explicit WindowManagerClient(Connection& connection) : connection_(connection) {}

    /// Raises the window and gives it the input, although another program has it.
    void activate(xcb_window_t window);
    /// Shows or hides the window in the task bar, the pager and the window switcher. Works on a
    /// window that is not mapped yet, too.
    void setActivationPolicy(xcb_window_t window, app::ActivationPolicy policy);

    /// Puts the window above normal ones, or back among them, once the window manager has it.
    void setLevel(xcb_window_t window, app::WindowLevel level);

    /// Whether the server still has the window: another program may have destroyed it.
    [[nodiscard]] bool exists(xcb_window_t window) const;

  private:
    enum class StateChange : std::uint32_t { remove = 0, add = 1 };
    void changeManagedState(xcb_window_t window, StateChange change, xcb_atom_t first,
                            xcb_atom_t second = XCB_ATOM_NONE);
    void sendToRoot(xcb_window_t window, std::string_view type,
                    const xcb_client_message_data_t& data);

    Connection& connection_;
};

}  // namespace platform::x11
