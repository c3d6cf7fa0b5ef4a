#pragma once

#include "platform/x11/native_geometry.h"
#include "platform/x11/screen_reader.h"

namespace platform::x11 {

/// The soft shadow that is drawn for a window that has none of its own: black, 45 % at its
/// strongest, the window's rectangle moved down by 8 points and blurred (Gaussian, 8 points wide),
/// cut where less than half a level is left, 24 points from its edges. Lengths in native pixels.
class SoftShadow {
  public:
    /// `scale` is that of the display: native pixels for each point.
    explicit SoftShadow(double scale);

    /// `window` with room for its shadow: 24 points at the sides, 16 above, 32 below.
    [[nodiscard]] NativeRect frameAround(const NativeRect& window) const;
    /// Draws the shadow of `window`, given in pixels of the canvas, below what is there already.
    void draw(const Canvas& canvas, const NativeRect& window) const;

  private:
    double blur_;
    int reach_;
    int drop_;
};

}  // namespace platform::x11
