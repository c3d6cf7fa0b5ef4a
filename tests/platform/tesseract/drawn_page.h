#pragma once

#include <string>
#include <vector>

#include "platform/tesseract/page_planes.h"

namespace platform::tesseract {

/// A mask from rows of text: '#' is set.
inline Mask maskOf(const std::vector<std::string>& rows) {
    Mask mask(static_cast<int>(rows.front().size()), static_cast<int>(rows.size()));
    for (int y = 0; y < mask.height(); ++y) {
        for (int x = 0; x < mask.width(); ++x) {
            const char mark = rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)];
            mask.at(x, y) = mark == '#' ? 1 : 0;
        }
    }
    return mask;
}

inline void fill(ColorPlane& page, const Box& box, Color color) {
    for (int y = box.top; y < box.bottom; ++y) {
        for (int x = box.left; x < box.right; ++x) {
            page.at(x, y) = color;
        }
    }
}

inline base::Image imageOf(const ColorPlane& page) {
    std::vector<std::uint8_t> pixels;
    for (int y = 0; y < page.height(); ++y) {
        for (int x = 0; x < page.width(); ++x) {
            const Color color = page.at(x, y);
            pixels.insert(pixels.end(), {color.blue, color.green, color.red, 255});
        }
    }
    return base::Image::fromPixels(page.width(), page.height(), std::move(pixels),
                                   base::AlphaChannel::none);
}

}  // namespace platform::tesseract
