#pragma once

#include "capture/image_encoder.h"

namespace platform::png {

/// Writes PNG files: 8 bits a sample, RGB, or RGBA where the picture is not opaque. Any thread.
///
/// Made for speed at little loss of size: a picture of some size is compressed in two bands on two
/// threads. All working memory is given back before the call returns.
class PngEncoder final : public capture::ImageEncoder {
  public:
    [[nodiscard]] base::Result<std::vector<std::uint8_t>> encodePng(const base::Image& image,
                                                                    base::Size pointSize) override;
};

}  // namespace platform::png
