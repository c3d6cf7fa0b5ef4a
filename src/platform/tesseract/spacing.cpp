#include "platform/tesseract/spacing.h"

#include <algorithm>
#include <cctype>
#include <cmath>

#include "platform/tesseract/characters.h"
#include "platform/tesseract/quotation_marks.h"

namespace platform::tesseract {

namespace {

/// In letter heights: a gap this wide is a space in any typeface.
constexpr double certainSpace = 0.62;
/// A gap this narrow is none, and as a share of the usual space of a page that shows enough.
constexpr double certainJoin = 0.15;
constexpr double joinShare = 0.5;
constexpr double nearlyUsual = 0.65;
constexpr double usualShareInWord = 1;
constexpr double spaceBesidePunctuation = 1.05;
/// All figures are as wide as each other, so that there is room beside a one.
constexpr double roomBesideOne = 0.2;
constexpr double nearbyShare = 0.4;
/// Gaps of each kind that a page must show before its own width counts.
constexpr int fewestGaps = 12;
/// The share of gaps that the engine may see otherwise.
constexpr double mostDissent = 0.05;
/// More new spaces in a line than this: then its characters and columns do not match after all.
constexpr std::size_t mostNewSpaces = 6;

CharacterPlace placeOf(const Box& box, const LineMetrics& metrics) {
    return {(metrics.baseline - box.top) / metrics.letterHeight,
            (metrics.baseline - box.bottom) / metrics.letterHeight,
            box.width() / metrics.letterHeight, 1 / metrics.letterHeight};
}

bool isPunctuation(const std::string& character) {
    // A per cent sign is as wide as a figure and stands as close.
    return character.size() == 1 && character != "%" &&
           std::ispunct(static_cast<unsigned char>(character[0])) != 0;
}

bool isSmallLetter(const std::string& character) {
    return character.size() == 1 && std::islower(static_cast<unsigned char>(character[0])) != 0;
}

/// Whether the column's neighbour on one side is as close as the letters of a word.
bool isInWord(const std::vector<CharacterColumn>& columns, std::size_t index, double letterHeight) {
    const auto isNear = [&](std::size_t left) {
        return columns[left + 1].box.left - columns[left].box.right < nearbyShare * letterHeight;
    };
    return (index > 0 && isNear(index - 1)) || (index + 1 < columns.size() && isNear(index));
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

Spacing::Spacing(const InkPlane& ink, double letterHeight)
    : ink_(ink), letterHeight_(letterHeight) {}
Spacing::~Spacing() = default;

Spacing::Line Spacing::look(const TextLine& line, const LineMetrics& metrics,
                            const std::string& text) const {
    Line added;
    added.text = withStraightApostrophes(text);
    const auto columns = columnsOf(line, letterHeight_);
    std::vector<ReadCharacter> read = readCharactersOf(text);
    if (isBullet(columns, metrics) && read.size() > 2 && read[1].isAfterSpace) {
        read[0].text = "•";
        added.text = "•" + added.text.substr(charactersOf(added.text).front().size());
    }
    if (const auto readings = alignCharacters(columns, read, metrics.letterHeight)) {
        added.characters = charactersIn(columns, read, *readings, metrics);
        for (const Character& character : added.characters) {
            if (character.isAlone) {
                added.sizes.learn(character.text, character.place);
            }
        }
    }
    return added;
}

std::size_t Spacing::add(Line line) {
    lines_.push_back(std::move(line));
    widths_.reset();
    return lines_.size() - 1;
}

std::vector<Spacing::Character> Spacing::charactersIn(const std::vector<CharacterColumn>& columns,
                                                      const std::vector<ReadCharacter>& read,
                                                      const std::vector<ColumnReading>& readings,
                                                      const LineMetrics& metrics) const {
    std::vector<Character> characters;
    std::size_t next = 0;
    const Box* previous = nullptr;
    bool followsInsertion = false;
    const auto addUnplaced = [&](std::size_t end) {
        for (; next < end; ++next) {
            characters.push_back({withStraightApostrophes(read[next].text),
                                  read[next].isAfterSpace,
                                  Gap::unknown,
                                  0,
                                  false,
                                  {}});
        }
    };
    for (std::size_t index = 0; index < columns.size(); ++index) {
        const Box& box = columns[index].box;
        const ColumnReading& reading = readings[index];
        const CharacterPlace place = placeOf(box, metrics);
        if (reading.isContinued) {
            previous = &box;
            continue;
        }
        addUnplaced(reading.count > 0 ? reading.first : next);
        double width =
            previous == nullptr ? 0 : (box.left - previous->right) / metrics.letterHeight;
        if (reading.count > 0 && previous != nullptr) {
            width -= read[reading.first].text == "1" ? roomBesideOne : 0;
            width -= reading.first > 0 && read[reading.first - 1].text == "1" ? roomBesideOne : 0;
        }
        Gap gap = columns[index].startsSegment ? Gap::betweenSegments : Gap::measured;
        if (previous == nullptr) {
            gap = Gap::unknown;
        }
        if (reading.count == 0) {
            const std::string mark = isInWord(columns, index, letterHeight_) ? markAt(place) : "";
            if (!mark.empty()) {
                characters.push_back({mark, false, gap, width, true, place});
                previous = &box;
                followsInsertion = true;
            }
            continue;
        }
        const bool isAlone =
            reading.count == 1 && (index + 1 == columns.size() || !readings[index + 1].isContinued);
        std::string text = read[next].text;
        if (isQuotationMark(text)) {
            text = isAlone ? quotationMarkIn(ink_, box, text) : withStraightApostrophes(text);
        }
        characters.push_back({std::move(text), read[next].isAfterSpace && !followsInsertion, gap,
                              width, isAlone, place});
        ++next;
        addUnplaced(reading.first + reading.count);
        previous = &box;
        followsInsertion = false;
    }
    addUnplaced(read.size());
    return characters;
}

Spacing::SpaceWidths Spacing::spaceWidths() const {
    std::vector<std::pair<double, bool>> gaps;
    std::vector<double> spaceGaps;
    for (const Line& line : lines_) {
        for (const Character& character : line.characters) {
            if (character.gap == Gap::measured) {
                gaps.emplace_back(character.width, character.isAfterSpace);
                if (character.isAfterSpace) {
                    spaceGaps.push_back(character.width);
                }
            }
        }
    }
    const int spaces = static_cast<int>(spaceGaps.size());
    const int others = static_cast<int>(gaps.size()) - spaces;
    if (spaces < fewestGaps || others < fewestGaps) {
        return {certainSpace, certainSpace, certainJoin};
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
    if (static_cast<double>(least) > mostDissent * static_cast<double>(gaps.size())) {
        return {certainSpace, certainSpace, certainJoin};
    }
    const double usual = median(std::move(spaceGaps));
    return {std::min(certainSpace, std::max(best, nearlyUsual * usual)),
            std::min(certainSpace, std::max(best, usualShareInWord * usual)), joinShare * usual};
}

std::string Spacing::corrected(std::size_t index) {
    const Line& line = lines_[index];
    if (!widths_) {
        widths_ = spaceWidths();
    }
    const SpaceWidths& widths = *widths_;
    std::size_t added = 0;
    std::string text;
    std::string previous;
    for (const Character& character : line.characters) {
        bool isSpace = character.isAfterSpace;
        // Between letters the engine knows the words; beside punctuation the typeface has room.
        const bool besideOne = character.text == "1" || previous == "1";
        const bool isPunctuated = isPunctuation(character.text) || isPunctuation(previous);
        if (character.gap == Gap::betweenSegments) {
            isSpace = true;
        } else if (character.gap == Gap::measured) {
            const bool isInWord = isSmallLetter(character.text) && isSmallLetter(previous);
            const double least = isPunctuated ? spaceBesidePunctuation
                                 : isInWord   ? widths.betweenLetters
                                              : widths.certain;
            const bool isWide = character.width > least;
            const bool isNarrow = isPunctuated && !besideOne && character.width < widths.impossible;
            isSpace = isWide || (isSpace && !isNarrow);
        }
        added += isSpace && !character.isAfterSpace ? 1 : 0;
        if (!text.empty() && isSpace) {
            text += ' ';
        }
        text += character.isAlone
                    ? line.sizes.corrected(character.text, character.place, isSpace ? "" : previous)
                    : character.text;
        previous = character.text;
    }
    return text.empty() || added > mostNewSpaces + line.characters.size() / 8 ? line.text : text;
}

}  // namespace platform::tesseract
