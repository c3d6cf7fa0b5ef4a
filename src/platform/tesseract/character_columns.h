#pragma once

#include <vector>

#include "platform/tesseract/text_line.h"

namespace platform::tesseract {

/// The glyphs that make one character of proportional text.
struct CharacterColumn {
    Box box;
    std::vector<Glyph> glyphs;
    /// The first of a segment that is not the line's first.
    bool startsSegment = false;
};

/// The columns of a line from the left: dots and accents share theirs with their letters, the two
/// strokes of a double quotation mark are one. Letters that touch each other are one column, too,
/// so that there may be fewer columns than characters. `letterHeight` in pixels.
std::vector<CharacterColumn> columnsOf(const TextLine& line, double letterHeight);

}  // namespace platform::tesseract
