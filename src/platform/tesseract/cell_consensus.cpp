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
/// In letter heights.
constexpr double tallShape = 0.6;

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

/// What the page shows at one place.
struct ShownCharacter {
    /// Empty for a cell whose shape says nothing.
    std::string text;
    /// Null for a space.
    const GlyphShape* shape = nullptr;
    bool isTall = false;
};

/// The cheapest way to turn what was read into what is shown (edit distance, Wagner and Fischer
/// 1974).
class CellAlignment {
  public:
    CellAlignment(const std::vector<ShownCharacter>& shown, const std::vector<std::string>& read)
        : shown_(shown),
          read_(read),
          columns_(read.size() + 1),
          costs_((shown.size() + 1) * columns_, std::numeric_limits<double>::max()),
          steps_(costs_.size(), Step::both) {
        costs_[0] = 0;
        for (std::size_t row = 0; row <= shown.size(); ++row) {
            for (std::size_t column = 0; column <= read.size(); ++column) {
                reach(row, column);
            }
        }
    }

    [[nodiscard]] double cost() const { return costs_.back(); }

    /// Which shown characters are which of those that were read, from the last to the first.
    [[nodiscard]] std::vector<std::pair<std::size_t, std::size_t>> pairs() const {
        std::vector<std::pair<std::size_t, std::size_t>> pairs;
        std::size_t row = shown_.size();
        std::size_t column = read_.size();
        while (row > 0 || column > 0) {
            const Step step = steps_[row * columns_ + column];
            row -= step != Step::characterOnly ? 1 : 0;
            column -= step != Step::cellOnly ? 1 : 0;
            if (step == Step::both) {
                pairs.emplace_back(row, column);
            }
        }
        return pairs;
    }

  private:
    enum class Step : std::uint8_t { both, cellOnly, characterOnly };

    void reach(std::size_t row, std::size_t column) {
        const std::size_t place = row * columns_ + column;
        if (row > 0) {
            offer(place, costs_[place - columns_] + costOfLeavingOut(shown_[row - 1].text),
                  Step::cellOnly);
        }
        if (column > 0) {
            offer(place, costs_[place - 1] + costOfAdding(read_[column - 1]), Step::characterOnly);
        }
        if (row > 0 && column > 0) {
            offer(place, costs_[place - columns_ - 1] + costOfPair(row - 1, column - 1),
                  Step::both);
        }
    }

    void offer(std::size_t place, double cost, Step step) {
        if (cost < costs_[place]) {
            costs_[place] = cost;
            steps_[place] = step;
        }
    }

    [[nodiscard]] double costOfPair(std::size_t row, std::size_t column) const {
        const ShownCharacter& shown = shown_[row];
        const bool isContradicted =
            shown.text.empty() && shown.isTall && isSmallMark(read_[column]);
        return isContradicted ? contradictedShape : costOfReading(shown.text, read_[column]);
    }

    const std::vector<ShownCharacter>& shown_;
    const std::vector<std::string>& read_;
    std::size_t columns_;
    std::vector<double> costs_;
    std::vector<Step> steps_;
};

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
    std::vector<ShownCharacter> shown;
    for (const Cell& cell : line.cells) {
        if (cell.isAfterSpace) {
            shown.push_back({" ", nullptr, false});
        }
        shown.push_back({characterOf(cell).value_or(""), &cell.shape,
                         heightOf(cell.shape) >= tallShape * letterHeight_});
    }
    std::vector<std::string> characters;
    characters.reserve(shown.size());
    for (const ShownCharacter& character : shown) {
        characters.push_back(character.text);
    }
    if (std::find(characters.begin(), characters.end(), "") == characters.end()) {
        return characters;
    }
    const CellAlignment alignment(shown, line.characters);
    if (alignment.cost() > highestCost * static_cast<double>(line.cells.size())) {
        return std::nullopt;
    }
    for (const auto& [place, read] : alignment.pairs()) {
        std::string& character = characters[place];
        if (character.empty() && line.characters[read] != " ") {
            character = line.characters[read];
        }
        if (shown[place].shape != nullptr && isQuotationMark(character)) {
            character = quotationMarkOf(character, *shown[place].shape);
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
