#pragma once

#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace journeys {

/// Eight bits of a pixel: 0 blue, 8 green, 16 red.
inline int channel(std::uint32_t pixel, unsigned shift) {
    return static_cast<int>((pixel >> shift) & 0xffU);
}

/// Whether `shown` is `original` under black at alpha 0.4, give or take rounding.
inline bool isDimmed(std::uint32_t shown, std::uint32_t original) {
    for (const unsigned shift : {0U, 8U, 16U}) {
        if (std::abs(channel(shown, shift) - channel(original, shift) * 0.6) > 3) {
            return false;
        }
    }
    return true;
}

/// Whether `shown` is `original` dimmed, then under the highlight (0.2, 0.6, 1.0) at alpha 0.5.
inline bool isHighlighted(std::uint32_t shown, std::uint32_t original) {
    const double color[] = {255.0, 0.6 * 255, 0.2 * 255};
    for (unsigned index = 0; index < 3; ++index) {
        const double expected = channel(original, index * 8) * 0.6 * 0.5 + color[index] * 0.5;
        if (std::abs(channel(shown, index * 8) - expected) > 3) {
            return false;
        }
    }
    return true;
}

}  // namespace journeys
