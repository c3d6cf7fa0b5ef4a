#pragma once

#include <cstdint>
#include <vector>

#include "platform/tesseract/page_planes.h"

namespace platform::tesseract {

/// The shape of one character as it is drawn, cut to its ink.
struct GlyphShape {
    int width = 0;
    /// One byte a pixel, 0 or 1, rows from the top.
    std::vector<std::uint8_t> pixels;
    /// From the top of the shape to the baseline, pixels; tells a comma from an apostrophe.
    int rise = 0;

    [[nodiscard]] bool isEmpty() const { return pixels.empty(); }
};

/// What is drawn in a box of the page: the pixels with at least half of its strongest ink.
GlyphShape shapeIn(const InkPlane& ink, const Box& box, int baseline);

}  // namespace platform::tesseract
