#include "capture/captured_image.h"

#include <utility>

namespace capture {

CapturedImage::CapturedImage(base::Image pixels, base::Size size, ImageEncoder& encoder)
    : pixels_(std::move(pixels)), size_(size), encoder_(encoder) {}

const std::vector<std::uint8_t>* CapturedImage::pngRepresentation() {
    if (!png_) {
        png_ = encoder_.encodePng(pixels_, size_);
        pixels_ = {};
    }
    return png_->hasValue() ? &png_->value() : nullptr;
}

}  // namespace capture
