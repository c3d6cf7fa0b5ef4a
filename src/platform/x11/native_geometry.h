#pragma once

#include <cstdint>

namespace platform::x11 {

/// A rectangle in native pixels of the X screen: top-left origin, y down.
struct NativeRect {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    friend bool operator==(const NativeRect&, const NativeRect&) = default;
};

}  // namespace platform::x11
