#pragma once

#include "platform/tesseract/line_reader.h"

namespace platform::tesseract {

/// The surer words of two readings of one line (a vote of recognisers, after ROVER, Fiscus 1997).
///
/// The readings are laid over each other (edit distance, Wagner and Fischer 1974) and cut where
/// both have a space; of each piece the one whose least sure word is surer counts, the first of
/// equals. The confidence is that of the surer reading, because a line does not become writing by
/// being read twice. What `first` and `second` read otherwise are alternatives, the surer first.
LineReading mergedReading(const LineReading& first, const LineReading& second);

}  // namespace platform::tesseract
