#pragma once

#include <vector>

#include "platform/tesseract/reading_order.h"
#include "platform/tesseract/text_line.h"

namespace platform::tesseract {

/// Where a line's letters stand, in pixels of the page.
struct LineMetrics {
    double baseline = 0;
    double letterHeight = 0;
    /// Above the baseline.
    double ascent = 0;
    /// Below it.
    double descent = 0;
};

/// The metrics of each line. Lines of about the same size share one size and the usual ascent and
/// descent, so that a line without tall letters is not drawn larger than its neighbours.
std::vector<LineMetrics> measureLines(const std::vector<TextLine>& lines, double letterHeight,
                                      Typeface typeface);

}  // namespace platform::tesseract
