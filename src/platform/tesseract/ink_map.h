#pragma once

#include "platform/tesseract/background_model.h"
#include "platform/tesseract/page_planes.h"

namespace platform::tesseract {

/// How much each pixel differs from its background, whatever their colours: 0 none, 255 most.
/// Pixels between two backgrounds are the blended edge of a surface and count as none.
InkPlane measureInk(const ColorPlane& page, const BackgroundModel& background);

/// Which pixels are ink: those above a share of the strongest ink of their own mark, or of the tile
/// around them where that is less (local thresholds after Bernsen, 1986, with the minimum known to
/// be 0). So grey words and pale signs beside black ones stay whole.
Mask binarize(const InkPlane& ink);

}  // namespace platform::tesseract
