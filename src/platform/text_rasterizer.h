#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/geometry.h"
#include "overlay/overlay_surface.h"

namespace platform {

/// One line of text as coverage, a byte for each native pixel, rows from the top without padding.
struct TextBitmap {
    int width = 0;
    int height = 0;
    /// From the bottom-left corner of the text's box to the upper left pixel of the bitmap, in
    /// pixels, y down.
    int offsetX = 0;
    int offsetY = 0;
    /// 0 not covered, 255 covered.
    std::vector<std::uint8_t> coverage;
};

/// Measures and draws text for the overlay's painter. Main thread.
class TextRasterizer {
  public:
    virtual ~TextRasterizer() = default;
    /// The box of one line of text, in points.
    [[nodiscard]] virtual base::Size measure(const std::string& text,
                                             const overlay::Font& font) = 0;
    /// The same line in native pixels, `scale` of them for each point.
    [[nodiscard]] virtual TextBitmap rasterize(const std::string& text, const overlay::Font& font,
                                               double scale) = 0;
};

}  // namespace platform
