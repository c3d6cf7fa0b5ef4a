#pragma once

#include "platform/tesseract/background_model.h"
#include "platform/tesseract/text_line.h"

namespace platform::tesseract {

/// The share of the pixels in and closely around a line, but for its ink, that belongs to a flat or
/// smooth surface: near 1 for text on screens, far less for what looks like letters in photographs.
/// 1 where there are no such pixels. `mask` is the page's ink.
double flatShareAround(const TextLine& line, const BackgroundModel& background, const Mask& mask);

}  // namespace platform::tesseract
