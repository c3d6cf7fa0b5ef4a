#include "platform/tesseract/cell_consensus.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <limits>

#include "platform/tesseract/cell_marks.h"
#include "platform/tesseract/character_grid.h"
#include "platform/tesseract/characters.h"
#include "platform/tesseract/quotation_marks.h"

namespace platform::tesseract {

namespace {

/// In letter heights, above and below the baseline.
constexpr double cellAscent = 2.1;
constexpr double cellDescent = 0.8;
/// A space is an empty cell with this much of the pitch free.
constexpr double freeShare = 0.55;

/// Words that the engine is this sure of teach what the shapes are.
constexpr int sureConfidence = 75;

/// A cell; more, and the line is not what the cells show.
constexpr double highestCost = 0.6;

/// For a tall shape that was read as a dash or a dot.
constexpr double contradictedShape = 1;

bool isSmallMark(const std::string& character) {
    static const std::array<std::string, 9> marks{"-", "—", "–", ".", ",", "_", "'", "~", "·"};
    return std::find(marks.begin(), marks.end(), character) != marks.end();
}

int heightOf(const GlyphShape& shape) {
    return shape.width > 0 ? static_cast<int>(shape.pixels.size()) / shape.width : 0;
}

double costOfReading(const std::string& shown, const std::string& read) {
    if (shown == read) {
        return 0;
    }
    if (shown == " " || read == " ") {
        return shown.empty() ? 0.9 : 1.4;
    }
    return shown.empty() ? 0.2 : 1;
}

double costOfLeavingOut(const std::string& shown) {
    if (shown == " ") {
        return 0.6;
    }
    return shown.empty() ? 1.4 : 1.1;
}

double costOfAdding(const std::string& read) {
    return read == " " ? 0.4 : 1.2;
}

}  // namespace

std::size_t CellConsensus::add(const TextLine& line, const LineMetrics& metrics,
                               const LineReading& reading) {
    Line added{withStraightQuotes(reading.text), charactersOf(reading.text),
               cellsOf(line, metrics)};
    replaceZeros(added);
    learn(added, reading);
    expandDashes(added);
    lines_.push_back(std::move(added));
    return lines_.size() - 1;
}

void CellConsensus::learn(const Line& line, const LineReading& reading) {
    std::vector<std::vector<const Cell*>> shown(1);
    for (const Cell& cell : line.cells) {
        if (cell.isAfterSpace) {
            shown.emplace_back();
        }
        shown.back().push_back(&cell);
    }
    std::vector<std::vector<std::string>> read(1);
    for (const std::string& character : line.characters) {
        if (character == " ") {
            read.emplace_back();
        } else {
            read.back().push_back(character);
        }
    }
    if (shown.size() != read.size() || read.size() != reading.wordConfidences.size()) {
        return;
    }
    for (std::size_t word = 0; word < read.size(); ++word) {
        if (read[word].size() != shown[word].size() ||
            reading.wordConfidences[word] < sureConfidence) {
            continue;
        }
        for (std::size_t index = 0; index < read[word].size(); ++index) {
            if (!shown[word][index]->shape.isEmpty()) {
                dictionary_.learn(shown[word][index]->shape, read[word][index]);
            }
        }
    }
}

void CellConsensus::replaceZeros(Line& line) {
    // Coding fonts put a dot into their zero, which the engine takes for one of these signs. An at
    // sign stands beside a name or another one, or in front of a number.
    const auto isName = [&line](std::size_t index) {
        const std::string& character = line.characters[index];
        return character == "@" || character == "_" || character.size() > 1 ||
               std::isalpha(static_cast<unsigned char>(character.front())) != 0;
    };
    for (std::size_t index = 0; index < line.characters.size(); ++index) {
        std::string& character = line.characters[index];
        const bool isBesideName = (index > 0 && isName(index - 1)) ||
                                  (index + 1 < line.characters.size() && isName(index + 1));
        const bool isFirst = index == 0 || line.characters[index - 1] == " ";
        const bool isBeforeNumber =
            isFirst && index + 1 < line.characters.size() &&
            std::isdigit(static_cast<unsigned char>(line.characters[index + 1].front())) != 0;
        if (character == "©" || (character == "@" && !isBesideName && !isBeforeNumber)) {
            character = "0";
        }
    }
}

void CellConsensus::expandDashes(Line& line) {
    const auto spaces =
        static_cast<std::size_t>(std::count(line.characters.begin(), line.characters.end(), " "));
    for (std::size_t index = 0;
         index < line.characters.size() && line.characters.size() < line.cells.size() + spaces;
         ++index) {
        if (line.characters[index] == "—") {
            line.characters[index] = "-";
            line.characters.insert(line.characters.begin() + static_cast<std::ptrdiff_t>(index),
                                   "-");
        }
    }
}

std::vector<CellConsensus::Cell> CellConsensus::cellsOf(const TextLine& line,
                                                        const LineMetrics& metrics) const {
    const std::vector<Glyph> glyphs = line.glyphsFromLeft();
    const CharacterGrid grid(glyphs, pitch_, letterHeight_);
    const int baseline = static_cast<int>(std::lround(metrics.baseline));
    const int top = std::max(0, baseline - static_cast<int>(cellAscent * letterHeight_));
    const int bottom =
        std::min(ink_.height(), baseline + static_cast<int>(cellDescent * letterHeight_) + 1);
    Box inked = glyphs.front().box;
    for (const Glyph& glyph : glyphs) {
        inked = inked.united(glyph.box);
    }
    std::vector<Cell> cells;
    int previous = 0;
    int previousRight = 0;
    for (const auto& [number, columns] : grid.cells()) {
        const Box box{std::max(0, grid.leftOf(number)), std::max(top, inked.top),
                      std::min(ink_.width(), grid.leftOf(number + 1)),
                      std::min(bottom, inked.bottom)};
        const bool isAfterSpace = !cells.empty() && number - previous > 1 &&
                                  columns.right - previousRight > freeShare * grid.pitch();
        cells.push_back({shapeIn(ink_, box, baseline), isAfterSpace});
        previous = number;
        previousRight = columns.right;
    }
    return cells;
}

std::optional<std::string> CellConsensus::characterOf(const Cell& cell) const {
    const GlyphShape& shape = cell.shape;
    if (shape.isEmpty()) {
        return std::nullopt;
    }
    if (std::string mark = markOf(shape, letterHeight_, pitch_); !mark.empty()) {
        return mark;
    }
    return dictionary_.find(shape);
}

std::optional<std::vector<std::string>> CellConsensus::align(const Line& line) const {
    enum class Step : std::uint8_t { both, cellOnly, characterOnly };
    // What the page shows: an empty string is a cell whose shape says nothing.
    std::vector<std::string> shown;
    std::vector<const GlyphShape*> shapes;
    for (const Cell& cell : line.cells) {
        if (cell.isAfterSpace) {
            shown.emplace_back(" ");
            shapes.push_back(nullptr);
        }
        shown.push_back(characterOf(cell).value_or(""));
        shapes.push_back(&cell.shape);
    }
    const std::size_t rows = shown.size() + 1;
    const std::size_t columns = line.characters.size() + 1;
    std::vector<double> costs(rows * columns, std::numeric_limits<double>::max());
    std::vector<Step> steps(rows * columns, Step::both);
    costs[0] = 0;
    const auto offer = [&](std::size_t place, double cost, Step step) {
        if (cost < costs[place]) {
            costs[place] = cost;
            steps[place] = step;
        }
    };
    for (std::size_t row = 0; row < rows; ++row) {
        for (std::size_t column = 0; column < columns; ++column) {
            const std::size_t place = row * columns + column;
            if (row > 0) {
                offer(place, costs[place - columns] + costOfLeavingOut(shown[row - 1]),
                      Step::cellOnly);
            }
            if (column > 0) {
                offer(place, costs[place - 1] + costOfAdding(line.characters[column - 1]),
                      Step::characterOnly);
            }
            if (row > 0 && column > 0) {
                const std::string& read = line.characters[column - 1];
                const bool isContradicted = shown[row - 1].empty() && isSmallMark(read) &&
                                            heightOf(*shapes[row - 1]) >= 0.6 * letterHeight_;
                const double cost =
                    isContradicted ? contradictedShape : costOfReading(shown[row - 1], read);
                offer(place, costs[place - columns - 1] + cost, Step::both);
            }
        }
    }
    if (std::find(shown.begin(), shown.end(), "") == shown.end()) {
        return shown;
    }
    if (costs.back() > highestCost * static_cast<double>(line.cells.size())) {
        return std::nullopt;
    }
    std::vector<std::string> characters(shown);
    std::size_t row = shown.size();
    std::size_t column = line.characters.size();
    while (row > 0 || column > 0) {
        switch (steps[row * columns + column]) {
            case Step::both:
                --row;
                --column;
                if (characters[row].empty() && line.characters[column] != " ") {
                    characters[row] = line.characters[column];
                }
                if (shapes[row] != nullptr && isQuotationMark(characters[row])) {
                    characters[row] = quotationMarkOf(characters[row], *shapes[row]);
                }
                break;
            case Step::cellOnly:
                --row;
                break;
            case Step::characterOnly:
                --column;
                break;
        }
    }
    return characters;
}

std::string CellConsensus::corrected(std::size_t index) const {
    const Line& line = lines_[index];
    const auto characters = align(line);
    if (!characters) {
        return line.reading;
    }
    std::string text;
    for (const std::string& character : *characters) {
        text += character;
    }
    return text;
}

}  // namespace platform::tesseract
