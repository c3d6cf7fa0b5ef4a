#pragma once

#include <cstdint>

namespace platform::x11 {

/// The upper left corner of a pixel of the X screen: top-left origin, y down.
struct NativePoint {
    std::int32_t x = 0;
    std::int32_t y = 0;
    friend bool operator==(const NativePoint&, const NativePoint&) = default;
};

/// A rectangle in native pixels of the X screen: top-left origin, y down.
struct NativeRect {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;

    /// Half-open, as for `base::Rect`.
    [[nodiscard]] bool contains(NativePoint point) const {
        return x <= point.x && point.x < x + width && y <= point.y && point.y < y + height;
    }
    [[nodiscard]] bool isEmpty() const { return width <= 0 || height <= 0; }
    friend bool operator==(const NativeRect&, const NativeRect&) = default;
};

}  // namespace platform::x11
