#pragma once

#include <algorithm>

namespace base {

/// A point in one of the three coordinate spaces (view, screen, top-left), in points.
struct Point {
    double x = 0;
    double y = 0;
    friend bool operator==(const Point&, const Point&) = default;
};

/// A width and a height, in points unless said otherwise.
struct Size {
    double width = 0;
    double height = 0;
    friend bool operator==(const Size&, const Size&) = default;
};

/// A width and a height of a picture, in pixels.
struct PixelSize {
    int width = 0;
    int height = 0;
    [[nodiscard]] bool isEmpty() const { return width <= 0 || height <= 0; }
    friend bool operator==(const PixelSize&, const PixelSize&) = default;
};

/// A rectangle given by the corner with the smallest coordinates and a size.
///
/// Which corner of the picture the origin is depends on the space: bottom-left in view and screen
/// space (y up), top-left in top-left space (y down).
struct Rect {
    Point origin;
    Size size;

    [[nodiscard]] double minX() const { return origin.x; }
    [[nodiscard]] double minY() const { return origin.y; }
    [[nodiscard]] double midX() const { return origin.x + size.width / 2; }
    [[nodiscard]] double midY() const { return origin.y + size.height / 2; }
    [[nodiscard]] double maxX() const { return origin.x + size.width; }
    [[nodiscard]] double maxY() const { return origin.y + size.height; }
    [[nodiscard]] bool isEmpty() const { return !(size.width > 0 && size.height > 0); }

    /// Half-open containment: the minimum edges are inside, the maximum edges are not.
    [[nodiscard]] bool contains(Point point) const {
        return minX() <= point.x && point.x < maxX() && minY() <= point.y && point.y < maxY();
    }

    friend bool operator==(const Rect&, const Rect&) = default;
};

/// The common part of two rectangles; a rectangle of zeros when there is none.
inline Rect intersection(const Rect& first, const Rect& second) {
    const double minX = std::max(first.minX(), second.minX());
    const double minY = std::max(first.minY(), second.minY());
    const double maxX = std::min(first.maxX(), second.maxX());
    const double maxY = std::min(first.maxY(), second.maxY());
    if (!(maxX > minX && maxY > minY)) {
        return {};
    }
    return {{minX, minY}, {maxX - minX, maxY - minY}};
}

/// The smallest rectangle that holds both; an empty one counts for nothing.
inline Rect unionOf(const Rect& first, const Rect& second) {
    if (first.isEmpty()) {
        return second;
    }
    if (second.isEmpty()) {
        return first;
    }
    const double minX = std::min(first.minX(), second.minX());
    const double minY = std::min(first.minY(), second.minY());
    const double maxX = std::max(first.maxX(), second.maxX());
    const double maxY = std::max(first.maxY(), second.maxY());
    return {{minX, minY}, {maxX - minX, maxY - minY}};
}

/// The rectangle grown by `margin` on every side.
inline Rect grown(const Rect& rect, double margin) {
    return {{rect.minX() - margin, rect.minY() - margin},
            {rect.size.width + 2 * margin, rect.size.height + 2 * margin}};
}

}  // namespace base
