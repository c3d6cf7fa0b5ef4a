#pragma once

#include <string>

#include "platform/tesseract/glyph_dictionary.h"

namespace platform::tesseract {

/// Whether `character` is a quotation mark or an apostrophe, straight or curly.
bool isQuotationMark(const std::string& character);

/// The mark that was read, straight when its shape is: the engine prefers curly marks, screens show
/// straight ones. A curly mark leans: the middle of its upper half is beside that of its lower
/// half.
std::string quotationMarkOf(const std::string& character, const GlyphShape& shape);

/// The mark that was read as it is drawn in a box of the page, straight when its ink is: that of a
/// curly mark leans, and that of an opening one lies low, while straight marks taper downwards.
std::string quotationMarkIn(const InkPlane& ink, const Box& box, const std::string& character);

}  // namespace platform::tesseract
