#pragma once

#include <vector>

#include "platform/tesseract/text_line.h"

namespace platform::tesseract {

/// How far apart the characters of a page stand, in pixels, when its text is monospaced; 0 when it
/// is not. The pitch is the one of which most distances between neighbours are whole multiples (as
/// the fixed-pitch test of Smith, 2007, over a whole page).
double measurePitch(const std::vector<TextLine>& lines, double letterHeight);

/// The pitch of each line of a page whose own pitch is `pagePitch`, 0 for proportional lines: a
/// page may show code between prose, or a heading over a terminal. A line that is too short to tell
/// is as the page is.
std::vector<double> pitchesOf(const std::vector<TextLine>& lines, double pagePitch,
                              double letterHeight);

}  // namespace platform::tesseract
