#pragma once

#include <cstdlib>
#include <string>

#include "desktop/picture.h"
#include "journeys/overlay_colors.h"

namespace journeys {

/// "equal", or what is different: every pixel of a window is that of the screen, only its round
/// corners may be missing.
inline std::string windowDifference(const desktop::Picture& screen,
                                    const desktop::Picture& window) {
    if (window.width != screen.width || window.height != screen.height) {
        return desktop::difference(screen, window);
    }
    constexpr int corner = 12;
    for (int y = 0; y < window.height; ++y) {
        for (int x = 0; x < window.width; ++x) {
            const bool isInCorner = (x < corner || x >= window.width - corner) &&
                                    (y < corner || y >= window.height - corner);
            const std::uint32_t taken = window.at(x, y);
            if (isInCorner && taken >> 24U != 255) {
                continue;
            }
            // A compositor that rounds the corners itself softens their edge.
            const int tolerance = isInCorner ? 24 : 0;
            for (const unsigned shift : {0U, 8U, 16U, 24U}) {
                if (std::abs(channel(taken, shift) - channel(screen.at(x, y), shift)) > tolerance) {
                    return "different at " + std::to_string(x) + ", " + std::to_string(y);
                }
            }
        }
    }
    return "equal";
}

}  // namespace journeys
