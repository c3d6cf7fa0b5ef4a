#include "base/aspect_fill.h"

#include <cmath>

namespace base {

Rect aspectFillCrop(PixelSize picture, double pixelAspect, PixelSize view) {
    if (picture.isEmpty() || view.isEmpty()) {
        return {};
    }
    const bool isUsable = std::isfinite(pixelAspect) && pixelAspect > 0;
    const double width = picture.width;
    const double height = picture.height;
    // Of the view, in pixels of the picture.
    const double proportion =
        static_cast<double>(view.width) / view.height / (isUsable ? pixelAspect : 1);
    const double cropWidth = std::min(width, height * proportion);
    const double cropHeight = std::min(height, width / proportion);
    return {{(width - cropWidth) / 2, (height - cropHeight) / 2}, {cropWidth, cropHeight}};
}

}  // namespace base
