#include "platform/tesseract/spacing.h"

#include "platform/tesseract/characters.h"

namespace platform::tesseract {

namespace {

/// In letter heights: a gap this wide is a space in any typeface.
constexpr double certainSpace = 0.62;
/// More spaces than this would be new: then characters and glyphs do not match after all.
constexpr int mostNewSpaces = 2;

/// The columns from `left` up to, not including, `right`.
struct Extent {
    int left = 0;
    int right = 0;
};

/// The columns of characters: dots and accents share them with their letters.
std::vector<Extent> columnsOf(const std::vector<Glyph>& glyphs) {
    std::vector<Extent> columns;
    for (const Glyph& glyph : glyphs) {
        const Box& box = glyph.box;
        if (!columns.empty()) {
            Extent& last = columns.back();
            const int shared = std::min(box.right, last.right) - box.left;
            if (shared > 0 && shared >= 0.5 * std::min(box.width(), last.right - last.left)) {
                last.right = std::max(last.right, box.right);
                continue;
            }
        }
        columns.push_back({box.left, box.right});
    }
    return columns;
}

}  // namespace

std::string Spacing::apply(const std::string& text, const TextLine& line) const {
    const std::vector<Glyph> glyphs = line.glyphsFromLeft();
    std::vector<std::string> characters = charactersOf(text);
    std::erase(characters, " ");
    if (characters.empty() || glyphs.empty()) {
        return text;
    }
    const auto columns = columnsOf(glyphs);
    if (columns.size() != characters.size()) {
        return text;
    }
    std::vector<bool> isSpaced;
    bool afterSpace = false;
    for (const std::string& character : charactersOf(text)) {
        if (character != " ") {
            isSpaced.push_back(afterSpace);
        }
        afterSpace = character == " ";
    }
    int added = 0;
    for (std::size_t index = 1; index < columns.size(); ++index) {
        const int gap = columns[index].left - columns[index - 1].right;
        if (!isSpaced[index] && gap >= certainSpace * letterHeight_) {
            isSpaced[index] = true;
            ++added;
        }
    }
    if (added > mostNewSpaces) {
        return text;
    }
    std::string spaced;
    for (std::size_t index = 0; index < characters.size(); ++index) {
        spaced += (isSpaced[index] && index > 0 ? " " : "") + characters[index];
    }
    return spaced;
}

}  // namespace platform::tesseract
