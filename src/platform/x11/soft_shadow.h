#pragma once

#include <cstdint>
#include <deque>
#include <vector>

#include "platform/x11/native_geometry.h"
#include "platform/x11/screen_reader.h"

namespace platform::x11 {

/// The soft shadow that is drawn for a window that has none of its own: black, 45 % at its
/// strongest, the shape of what is at least half opaque of the window, moved down by 8 points and
/// blurred (Gaussian, 8 points wide), cut where less than half a level is left, 24 points from its
/// edges. Lengths in native pixels.
class SoftShadow {
  public:
    /// `scale` is that of the display: native pixels for each point.
    explicit SoftShadow(double scale);

    /// `window` with room for its shadow: 24 points at the sides, 16 above, 32 below.
    [[nodiscard]] NativeRect frameAround(const NativeRect& window) const;
    /// Draws the shadow of `window`, given in pixels of the canvas, below what is there already.
    void draw(const Canvas& canvas, const NativeRect& window) const;

  private:
    /// Rows of the window that cast the same shadow.
    struct Band {
        int begin;
        int end;
        /// Where they begin to cast one and end to, in turn.
        std::vector<int> edges;
        /// How much of a row's blurred pixels falls on each column of the canvas, 0 to 1.
        std::vector<float> shares;
    };

    [[nodiscard]] std::vector<float> blurred(const std::vector<int>& edges, int length) const;
    void drawRow(std::uint8_t* row, int y, const std::deque<Band>& bands) const;
    [[nodiscard]] double inside(double edge, double place) const;

    double blur_;
    int reach_;
    int drop_;
    /// What is `inside` of an edge, from a reach before it to a reach behind it.
    std::vector<float> profile_;
};

}  // namespace platform::x11
