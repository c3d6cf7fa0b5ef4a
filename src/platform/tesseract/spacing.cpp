#include "platform/tesseract/spacing.h"

#include <algorithm>
#include <cmath>

#include "platform/tesseract/characters.h"
#include "platform/tesseract/quotation_marks.h"

namespace platform::tesseract {

namespace {

/// In letter heights: a gap this wide is a space in any typeface.
constexpr double certainSpace = 0.62;
/// Gaps of each kind that a page must show before its own width counts.
constexpr int fewestGaps = 12;
/// The share of gaps that the engine may see otherwise.
constexpr double mostDissent = 0.05;
/// More new spaces in a line than this: then its characters and columns do not match after all.
constexpr int mostNewSpaces = 6;

bool isLowLine(const CharacterColumn& column, double baseline, double letterHeight) {
    return column.glyphs.size() == 1 && column.box.top >= baseline &&
           column.box.height() <= std::max(2.0, 0.25 * letterHeight) &&
           column.box.width() >= 0.6 * letterHeight;
}

/// A small disc in front of a line, half way up.
bool isBullet(const std::vector<CharacterColumn>& columns, const LineMetrics& metrics) {
    if (columns.size() < 3 || columns[0].glyphs.size() != 1) {
        return false;
    }
    const Box& box = columns[0].box;
    const double size = std::max(box.width(), box.height()) / metrics.letterHeight;
    const double middle = (metrics.baseline - box.centerY()) / metrics.letterHeight;
    return size > 0.3 && size < 0.9 &&
           std::abs(box.width() - box.height()) <= 0.25 * box.height() + 1 && middle > 0.3 &&
           middle < 0.85 && columns[0].glyphs[0].pixelCount >= 0.6 * box.area() &&
           columns[1].box.left - box.right > 0.4 * metrics.letterHeight;
}

}  // namespace

void Spacing::add(const TextLine& line, const LineMetrics& metrics, const std::string& text) {
    Line added{withStraightApostrophes(text), {}};
    const auto columns = columnsOf(line, letterHeight_);
    std::vector<std::string> characters = charactersOf(text);
    if (isBullet(columns, metrics) && characters.size() > 2 && characters[1] == " ") {
        characters[0] = "•";
        added.text = "•" + added.text.substr(charactersOf(added.text).front().size());
    }
    const auto spaces =
        static_cast<std::size_t>(std::count(characters.begin(), characters.end(), " "));
    const auto isLow = [&](const CharacterColumn& column) {
        return isLowLine(column, metrics.baseline, metrics.letterHeight);
    };
    const auto lowLines =
        static_cast<std::size_t>(std::count_if(columns.begin(), columns.end(), isLow));
    const std::size_t count = characters.size() - spaces;
    const bool lacksLowLines = lowLines > 0 && count + lowLines == columns.size() &&
                               std::count(characters.begin(), characters.end(), "_") == 0;
    if (count == columns.size() || lacksLowLines) {
        std::size_t next = 0;
        for (std::size_t index = 0; index < columns.size(); ++index) {
            const CharacterColumn& column = columns[index];
            Character character;
            while (next < characters.size() && characters[next] == " ") {
                character.isAfterSpace = true;
                ++next;
            }
            if (lacksLowLines && isLow(column)) {
                // The engine took the low line for a space.
                character = {"_", 0, false, false};
            } else {
                character.text = characters[next++];
            }
            if (isQuotationMark(character.text)) {
                character.text = quotationMarkOf(
                    character.text, shapeIn(ink_, column.box, static_cast<int>(metrics.baseline)));
            }
            if (index > 0) {
                character.gap =
                    (column.box.left - columns[index - 1].box.right) / metrics.letterHeight;
                character.startsSegment = column.startsSegment;
                const bool followsInsertion = lacksLowLines && isLow(columns[index - 1]);
                character.isAfterSpace = character.isAfterSpace && !followsInsertion;
            }
            added.characters.push_back(std::move(character));
        }
    }
    lines_.push_back(std::move(added));
}

double Spacing::narrowestSpace() const {
    std::vector<std::pair<double, bool>> gaps;
    int spaces = 0;
    for (const Line& line : lines_) {
        for (std::size_t index = 1; index < line.characters.size(); ++index) {
            const Character& character = line.characters[index];
            if (!character.startsSegment) {
                gaps.emplace_back(character.gap, character.isAfterSpace);
                spaces += character.isAfterSpace ? 1 : 0;
            }
        }
    }
    const int others = static_cast<int>(gaps.size()) - spaces;
    if (spaces < fewestGaps || others < fewestGaps) {
        return certainSpace;
    }
    std::sort(gaps.begin(), gaps.end());
    int dissent = others;
    int least = dissent;
    double best = certainSpace;
    for (std::size_t index = 0; index + 1 < gaps.size(); ++index) {
        dissent += gaps[index].second ? 1 : -1;
        if (dissent < least && gaps[index + 1].first > gaps[index].first) {
            least = dissent;
            best = (gaps[index].first + gaps[index + 1].first) / 2;
        }
    }
    return least <= mostDissent * static_cast<double>(gaps.size()) ? best : certainSpace;
}

std::string Spacing::corrected(std::size_t index) {
    const Line& line = lines_[index];
    if (narrowest_ <= 0) {
        narrowest_ = std::min(narrowestSpace(), certainSpace);
    }
    int added = 0;
    std::string text;
    for (const Character& character : line.characters) {
        const bool isWide = character.startsSegment || character.gap > narrowest_;
        added += isWide && !character.isAfterSpace ? 1 : 0;
        if (!text.empty() && (isWide || character.isAfterSpace)) {
            text += ' ';
        }
        text += character.text;
    }
    return text.empty() || added > mostNewSpaces ? line.text : text;
}

}  // namespace platform::tesseract
