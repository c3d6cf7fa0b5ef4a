#include "platform/tesseract/character_columns.h"

#include <cstdlib>

namespace platform::tesseract {

namespace {

bool overlap(const Box& one, const Box& other) {
    const int shared = one.sharedColumns(other);
    return shared > 0 && shared >= 0.5 * std::min(one.width(), other.width());
}

/// Two short strokes at the same height, high above the baseline and close together.
bool isDoubleQuote(const CharacterColumn& column, const Glyph& glyph, const Box& segment,
                   double letterHeight) {
    const Box& one = column.box;
    const Box& other = glyph.box;
    const auto isShort = [&](const Box& box) {
        return box.height() < 0.65 * letterHeight && box.height() >= box.width() &&
               box.bottom < segment.bottom - 0.4 * letterHeight;
    };
    return column.glyphs.size() == 1 && isShort(one) && isShort(other) &&
           std::abs(one.top - other.top) <= 1 && std::abs(one.bottom - other.bottom) <= 1 &&
           other.left - one.right < 0.4 * letterHeight;
}

}  // namespace

std::vector<CharacterColumn> columnsOf(const TextLine& line, double letterHeight) {
    std::vector<CharacterColumn> columns;
    for (const Segment& segment : line.segments) {
        bool isFirst = true;
        for (const Glyph& glyph : TextLine{{segment}}.glyphsFromLeft()) {
            if (!isFirst && (overlap(columns.back().box, glyph.box) ||
                             isDoubleQuote(columns.back(), glyph, segment.box, letterHeight))) {
                columns.back().box = columns.back().box.united(glyph.box);
                columns.back().glyphs.push_back(glyph);
                continue;
            }
            columns.push_back({glyph.box, {glyph}, isFirst && !columns.empty()});
            isFirst = false;
        }
    }
    return columns;
}

}  // namespace platform::tesseract
