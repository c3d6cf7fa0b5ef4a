#pragma once

namespace platform::x11 {

/// A rectangle with round corners in pixels of a window: y down, any fraction of a pixel.
struct RoundedBox {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
    /// At most half of the shorter side.
    double radius = 0;

    [[nodiscard]] bool isEmpty() const { return !(right > left && bottom > top); }
    friend bool operator==(const RoundedBox&, const RoundedBox&) = default;
};

/// How much of the stretch from `position` to `position + 1` lies between `start` and `end`: 0 to
/// 1.
double spanCoverage(double start, double end, int position);

/// How much of the pixel (x, y) the box covers, from 0 to 1: the exact area, no samples.
double pixelCoverage(const RoundedBox& box, int x, int y);

}  // namespace platform::x11
