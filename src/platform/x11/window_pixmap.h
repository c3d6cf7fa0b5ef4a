#pragma once

#include <xcb/xcb.h>

#include <optional>

#include "base/result.h"
#include "platform/x11/connection.h"

namespace platform::x11 {

/// The pixmap that a redirected top-level window paints into. Main thread.
class WindowPixmap {
  public:
    /// No value in the result when the window paints the screen itself; an error when it is gone or
    /// not mapped. Two round trips.
    static base::Result<std::optional<WindowPixmap>> of(Connection& connection,
                                                        xcb_window_t topLevel);
    WindowPixmap(WindowPixmap&& other) noexcept;
    WindowPixmap& operator=(WindowPixmap&& other) noexcept;
    ~WindowPixmap();

    [[nodiscard]] xcb_pixmap_t id() const { return id_; }
    [[nodiscard]] xcb_visualid_t visual() const { return visual_; }
    /// In pixels, the window's border included.
    [[nodiscard]] int width() const { return width_; }
    [[nodiscard]] int height() const { return height_; }

  private:
    explicit WindowPixmap(Connection& connection) : connection_(&connection) {}

    Connection* connection_;
    xcb_pixmap_t id_ = XCB_NONE;
    xcb_visualid_t visual_ = XCB_NONE;
    int width_ = 0;
    int height_ = 0;
};

}  // namespace platform::x11
