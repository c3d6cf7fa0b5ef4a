#pragma once

#include <cstdint>
#include <vector>

#include "base/geometry.h"
#include "base/image.h"
#include "base/result.h"

namespace capture {

/// Turns pictures into PNG files. Any thread.
class ImageEncoder {
  public:
    virtual ~ImageEncoder() = default;
    /// `pointSize` sets the resolution recorded with the picture: 72 pixels per inch where a pixel
    /// is a point. The pixels stay as they are; the colour profile goes along.
    [[nodiscard]] virtual base::Result<std::vector<std::uint8_t>> encodePng(
        const base::Image& image, base::Size pointSize) = 0;
};

}  // namespace capture
