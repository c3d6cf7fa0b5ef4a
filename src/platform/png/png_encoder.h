#pragma once

#include "capture/image_encoder.h"

namespace platform::png {

/// Writes PNG files: 8 bits a sample, RGB, or RGBA where the picture is not opaque. Any thread.
///
/// Made for speed at little loss of size: a picture of some size is compressed in bands, each on a
/// thread of its own. All working memory is given back before the call returns.
class PngEncoder final : public capture::ImageEncoder {
  public:
    /// As many threads as run at once here, up to four: what is left to gain beyond is less than
    /// what starting them takes.
    PngEncoder();
    /// At least one.
    explicit PngEncoder(int threads) : threads_(threads) {}

    [[nodiscard]] base::Result<std::vector<std::uint8_t>> encodePng(const base::Image& image,
                                                                    base::Size pointSize) override;

  private:
    int threads_;
};

}  // namespace platform::png
