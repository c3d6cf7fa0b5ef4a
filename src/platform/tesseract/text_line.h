#pragma once

#include <vector>

#include "platform/tesseract/page_planes.h"

namespace platform::tesseract {

/// A component that is taken for a letter, a part of one, or a mark.
struct Glyph {
    Box box;
    int pixelCount = 0;
    /// Its index among the page's components.
    std::size_t component = 0;
};

/// Glyphs of one row that stand close enough to be words of one phrase.
struct Segment {
    Box box;
    std::vector<Glyph> glyphs;
};

/// Segments that are read as one line, from left to right.
struct TextLine {
    std::vector<Segment> segments;

    [[nodiscard]] std::vector<Glyph> glyphsFromLeft() const {
        std::vector<Glyph> glyphs;
        for (const Segment& segment : segments) {
            glyphs.insert(glyphs.end(), segment.glyphs.begin(), segment.glyphs.end());
        }
        std::sort(glyphs.begin(), glyphs.end(), [](const Glyph& one, const Glyph& other) {
            return one.box.left < other.box.left;
        });
        return glyphs;
    }
};

}  // namespace platform::tesseract
