#include "platform/x11/coverage.h"

#include <algorithm>
#include <cmath>

namespace platform::x11 {

namespace {

/// A rectangle counted from the centre of a circle, both axes pointing into one of its quarters.
struct QuarterRect {
    double left;
    double top;
    double right;
    double bottom;

    [[nodiscard]] bool isEmpty() const { return !(right > left && bottom > top); }
    [[nodiscard]] double area() const { return (right - left) * (bottom - top); }
};

/// The integral of sqrt(r^2 - x^2) from 0 to x.
double areaUnderArc(double x, double radius) {
    const double inside = std::max(radius * radius - x * x, 0.0);
    return 0.5 * (x * std::sqrt(inside) + radius * radius * std::asin(std::min(x / radius, 1.0)));
}

double arcHeight(double x, double radius) {
    return std::sqrt(std::max(radius * radius - x * x, 0.0));
}

/// The area that `rect` shares with the circle. Left of `full` the circle is higher than the
/// rectangle, right of `end` it has sunk below it, and between them its arc is the edge.
double areaInsideArc(const QuarterRect& rect, double radius) {
    if (rect.top >= radius || rect.left >= radius) {
        return 0;
    }
    const double full =
        std::clamp(arcHeight(std::min(rect.bottom, radius), radius), rect.left, rect.right);
    const double end = std::clamp(arcHeight(rect.top, radius), full, rect.right);
    return (full - rect.left) * (rect.bottom - rect.top) + areaUnderArc(end, radius) -
           areaUnderArc(full, radius) - (end - full) * rect.top;
}

/// The part of the pixel that lies in a corner's square but outside of its arc. The pixel is given
/// by its distances from the two edges that meet in the corner.
double areaCutByCorner(double x, double y, double radius) {
    const QuarterRect square{std::max(radius - (x + 1), 0.0), std::max(radius - (y + 1), 0.0),
                             std::min(radius - x, radius), std::min(radius - y, radius)};
    return square.isEmpty() ? 0.0 : square.area() - areaInsideArc(square, radius);
}

}  // namespace

double spanCoverage(double start, double end, int position) {
    return std::max(std::min(end, position + 1.0) - std::max(start, double{position + 0.0}), 0.0);
}

double pixelCoverage(const RoundedBox& box, int x, int y) {
    const double covered =
        spanCoverage(box.left, box.right, x) * spanCoverage(box.top, box.bottom, y);
    if (covered <= 0 || box.radius <= 0) {
        return covered;
    }
    const double fromLeft = x - box.left;
    const double fromTop = y - box.top;
    const double fromRight = box.right - (x + 1);
    const double fromBottom = box.bottom - (y + 1);
    const double cut = areaCutByCorner(fromLeft, fromTop, box.radius) +
                       areaCutByCorner(fromRight, fromTop, box.radius) +
                       areaCutByCorner(fromLeft, fromBottom, box.radius) +
                       areaCutByCorner(fromRight, fromBottom, box.radius);
    return std::clamp(covered - cut, 0.0, 1.0);
}

}  // namespace platform::x11
