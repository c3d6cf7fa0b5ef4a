#pragma once

#include "base/geometry.h"

namespace base {

/// The part of a picture that fills a view completely with its proportions kept: as wide or as high
/// as the picture, in its middle. In pixels of the picture, from its top left corner.
///
/// `pixelAspect` is the width of one of its pixels divided by the height; 1 stands for what is not
/// a positive number. A size that is empty gives an empty rectangle.
Rect aspectFillCrop(PixelSize picture, double pixelAspect, PixelSize view);

}  // namespace base
