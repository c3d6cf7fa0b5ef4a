#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "overlay/workspace.h"
#include "platform/x11/connection.h"

namespace platform::x11 {

/// The application whose window is active: as the window manager says, else by the input focus,
/// else by what lies under the pointer. Windows of the overlay never count. Main thread.
class X11Workspace final : public overlay::Workspace {
  public:
    /// The name of the application that one of the identifiers stands for, best identifier first;
    /// none when it is not known.
    using NameLookup = std::function<std::optional<std::string>(const std::vector<std::string>&)>;

    /// `connection` must outlive the workspace.
    X11Workspace(Connection& connection, NameLookup nameOf);

    /// A few round trips; those of the fallbacks only when they are needed.
    [[nodiscard]] std::optional<overlay::Application> frontmostApplication() override;
    /// The process of the application that was found in front last; asks nobody.
    [[nodiscard]] std::optional<std::int32_t> lastFrontProcess() const { return lastFrontProcess_; }

  private:
    /// What says that a window manager is running, XCB_WINDOW_NONE without one.
    xcb_window_t windowManager();
    std::optional<overlay::Application> applicationOfActiveWindow();
    std::optional<overlay::Application> applicationOfFocus(xcb_window_t windowManager);
    std::optional<overlay::Application> applicationUnderPointer(xcb_window_t windowManager);
    std::optional<overlay::Application> applicationOf(xcb_window_t window);

    Connection& connection_;
    NameLookup nameOf_;
    std::optional<std::int32_t> lastFrontProcess_;
};

}  // namespace platform::x11
