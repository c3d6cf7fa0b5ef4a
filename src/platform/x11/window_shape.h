#pragma once

#include <xcb/xcb.h>

#include <optional>
#include <vector>

#include "platform/x11/connection.h"
#include "platform/x11/native_geometry.h"
#include "platform/x11/screen_reader.h"

namespace platform::x11 {

/// Which pixels of its rectangle a top-level window has: those of its bounding shape. What lies
/// outside of it belongs to others, on the screen and in the window's own pixmap.
class WindowShape {
  public:
    /// Every pixel there is.
    WindowShape() = default;
    /// Those of `parts`: in bands from the top to the bottom, from left to right in each.
    explicit WindowShape(std::vector<NativeRect> parts) : parts_(std::move(parts)) {}
    /// That of `window`, its upper left pixel, border included, being `origin`. Every pixel where
    /// the server does not tell. A round trip. Main thread.
    static WindowShape of(Connection& connection, xcb_window_t window, NativePoint origin);

    /// Whether it has every pixel of `area`.
    [[nodiscard]] bool covers(const NativeRect& area) const;
    /// Makes transparent what lies outside of it. `canvas`, with an alpha in each pixel, shows
    /// `area`.
    void clip(const Canvas& canvas, const NativeRect& area) const;

  private:
    std::optional<std::vector<NativeRect>> parts_;
};

}  // namespace platform::x11
