#pragma once

#include "platform/tesseract/background_model.h"
#include "platform/tesseract/page_planes.h"

namespace platform::tesseract {

/// How much each pixel differs from its background, whatever their colours: 0 none, 255 most.
/// Pixels between two backgrounds are the blended edge of a surface and count as none.
InkPlane measureInk(const ColorPlane& page, const BackgroundModel& background);

/// Which pixels are ink: those above a share of the strongest contrast nearby (a local threshold
/// after Bernsen, 1986, with the minimum known to be 0), so that grey words beside black ones stay.
Mask binarize(const InkPlane& ink);

}  // namespace platform::tesseract
