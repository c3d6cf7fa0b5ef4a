#pragma once

#include "capture/image_encoder.h"

namespace platform::macos {

/// PNG files by the system's bitmap representation.
class BitmapImageEncoder final : public capture::ImageEncoder {
  public:
    // Any thread.
    [[nodiscard]] base::Result<std::vector<std::uint8_t>> encodePng(const base::Image& image,
                                                                    base::Size pointSize) override;
};

}  // namespace platform::macos
