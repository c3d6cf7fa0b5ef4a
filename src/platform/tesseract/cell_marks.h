#pragma once

#include <string>

#include "platform/tesseract/glyph_shape.h"

namespace platform::tesseract {

/// The mark that a shape in a cell of monospaced text is, if its form and place leave no doubt:
/// one of . : ; = - _ ~ ^ " '; empty for everything else. The engine, which expects words, takes
/// rows of such marks for letters. `letterHeight` and `pitch` in pixels.
std::string markOf(const GlyphShape& shape, double letterHeight, double pitch);

}  // namespace platform::tesseract
