#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/geometry.h"
#include "base/image.h"
#include "capture/image_encoder.h"

namespace capture {

/// A captured picture with its size in points, and its PNG form, made at most once. Main thread.
///
/// The file and the pasteboard share it, so that both hold the very same bytes; the pixels are let
/// go as soon as the PNG form exists.
class CapturedImage {
  public:
    /// `encoder` must outlive the image.
    CapturedImage(base::Image pixels, base::Size size, ImageEncoder& encoder);

    /// The picture itself; empty once the PNG form exists. For a pasteboard that takes pictures and
    /// not files.
    [[nodiscard]] const base::Image& pixels() const { return pixels_; }
    /// In points.
    [[nodiscard]] base::Size size() const { return size_; }
    [[nodiscard]] bool hasPngRepresentation() const { return png_ && png_->hasValue(); }
    /// The bytes of a PNG file, encoded at the first call; null when the picture cannot be encoded.
    /// Valid as long as this is.
    const std::vector<std::uint8_t>* pngRepresentation();

  private:
    base::Image pixels_;
    base::Size size_;
    ImageEncoder& encoder_;
    std::optional<base::Result<std::vector<std::uint8_t>>> png_;
};

}  // namespace capture
