#include "platform/tesseract/character_alignment.h"

#include <array>
#include <cctype>
#include <cmath>
#include <limits>
#include <string_view>

#include "platform/tesseract/characters.h"

namespace platform::tesseract {

namespace {

/// In letter heights: how wide the ink of a character is, from narrow proportional typefaces to
/// monospaced ones.
struct Widths {
    double least = 0;
    double most = 0;
};

struct WidthClass {
    std::string_view characters;
    Widths widths;
};

constexpr std::array<WidthClass, 8> widthClasses{{
    {".,:;'|!`", {0.15, 0.45}},
    {"iIl", {0.2, 0.9}},
    {"jtfr1", {0.4, 0.95}},
    {"()[]{}\"/\\*^", {0.3, 0.7}},
    {"-~=+<>_", {0.3, 1.2}},
    {"mw", {1, 1.7}},
    {"MW@%", {1, 2}},
    {"ABCDEFGHJKLNOPQRSTUVXYZ", {0.8, 1.45}},
}};
constexpr Widths widthsOfLetter{0.65, 1.1};
constexpr Widths widthsOfOthers{0.25, 1.5};
/// What blending at the edges can add, so that thin characters may be off by more.
constexpr double blur = 0.1;

/// Costs: about 1 is a character without a column.
constexpr double costOfWidth = 0.5;
constexpr double costOfTouching = 0.25;
constexpr double costOfUnread = 0.7;
constexpr double costOfUnseen = 1;
constexpr double costOfPieces = 0.4;
constexpr double costOfWrongHeight = 0.8;
constexpr double costOfWrongForm = 0.25;
constexpr double costOfSpace = 0.8;
constexpr double costOfSpaceInside = 1;
constexpr double highestMeanCost = 0.4;

/// In letter heights: narrower gaps are hardly spaces, wider ones hardly anything else.
constexpr double narrowGap = 0.15;
constexpr double wideGap = 0.55;
constexpr double widestGapInside = 0.35;
constexpr double tallestMark = 0.85;
constexpr double smallestLetter = 0.5;
constexpr double tallestSmall = 1.22;
/// Letters without ascender or descender, in one piece.
constexpr std::string_view smallLetters = "acemnorsuvwxz";

constexpr std::size_t mostTouching = 4;
constexpr std::size_t mostPieces = 3;

Widths widthsOf(const std::string& character) {
    if (character.size() > 1) {
        return widthsOfOthers;
    }
    for (const WidthClass& group : widthClasses) {
        if (group.characters.find(character.front()) != std::string_view::npos) {
            return group.widths;
        }
    }
    return widthsOfLetter;
}

bool isLowMark(const std::string& character) {
    static const std::array<std::string, 12> marks{".", ",",  "-", "_", "~", "·",
                                                   "'", "\"", "’", "“", "–", "—"};
    for (const std::string& mark : marks) {
        if (character == mark) {
            return true;
        }
    }
    return false;
}

class Alignment {
  public:
    /// Ways that cost more than `limit` are left out; what is found below it is the cheapest way.
    Alignment(const std::vector<CharacterColumn>& columns,
              const std::vector<ReadCharacter>& characters, double letterHeight, double limit)
        : columns_(columns),
          characters_(characters),
          letterHeight_(letterHeight),
          stride_(characters.size() + 1),
          costs_((columns.size() + 1) * stride_, std::numeric_limits<double>::max()),
          steps_(costs_.size()) {
        costs_[0] = 0;
        for (const ReadCharacter& character : characters) {
            widths_.push_back(widthsOf(character.text));
        }
        for (std::size_t column = 0; column <= columns.size(); ++column) {
            for (std::size_t character = 0; character <= characters.size(); ++character) {
                if (costs_[place(column, character)] <= limit) {
                    leave(column, character);
                }
            }
        }
    }

    [[nodiscard]] double cost() const { return costs_.back(); }

    [[nodiscard]] std::vector<ColumnReading> readings() const {
        std::vector<ColumnReading> readings(columns_.size());
        std::size_t column = columns_.size();
        std::size_t character = characters_.size();
        while (column > 0 || character > 0) {
            const Step step = steps_[place(column, character)];
            column -= step.columns;
            character -= step.characters;
            for (std::size_t piece = 0; piece < step.columns; ++piece) {
                ColumnReading& reading = readings[column + piece];
                reading.first = character;
                reading.count = piece == 0 ? step.characters : 0;
                reading.isContinued = piece > 0;
            }
        }
        return readings;
    }

  private:
    struct Step {
        std::size_t columns = 0;
        std::size_t characters = 0;
    };

    [[nodiscard]] std::size_t place(std::size_t column, std::size_t character) const {
        return column * stride_ + character;
    }

    void offer(std::size_t column, std::size_t character, double cost, Step step) {
        const std::size_t to = place(column, character);
        if (cost < costs_[to]) {
            costs_[to] = cost;
            steps_[to] = step;
        }
    }

    void leave(std::size_t column, std::size_t character) {
        const double cost = costs_[place(column, character)];
        const std::size_t columnsLeft = columns_.size() - column;
        const std::size_t charactersLeft = characters_.size() - character;
        if (charactersLeft > 0) {
            offer(column, character + 1, cost + costOfUnseen, {0, 1});
        }
        if (columnsLeft == 0) {
            return;
        }
        offer(column + 1, character, cost + costOfLeaving(columns_[column].box), {1, 0});
        Widths widths;
        double inside = 0;
        for (std::size_t count = 1; count <= std::min(mostTouching, charactersLeft); ++count) {
            const ReadCharacter& next = characters_[character + count - 1];
            widths.least += widths_[character + count - 1].least;
            widths.most += widths_[character + count - 1].most + (count > 1 ? blur : 0);
            inside += count > 1 ? costOfTouching + (next.isAfterSpace ? costOfSpaceInside : 0) : 0;
            offer(column + 1, character + count,
                  cost + inside + costOfGap(column, character) +
                      costOfBox(columns_[column].box, widths) +
                      (count == 1 ? costOfForm(columns_[column], next.text) : 0),
                  {1, count});
        }
        if (charactersLeft == 0) {
            return;
        }
        Box whole = columns_[column].box;
        double broken = costOfPiece(whole, character) - costOfPieces;
        for (std::size_t pieces = 2; pieces <= std::min(mostPieces, columnsLeft); ++pieces) {
            const Box& piece = columns_[column + pieces - 1].box;
            if (piece.left - whole.right > widestGapInside * letterHeight_) {
                break;
            }
            whole = whole.united(piece);
            broken += costOfPiece(piece, character);
            offer(
                column + pieces, character + 1,
                cost + costOfGap(column, character) + broken + costOfBox(whole, widths_[character]),
                {pieces, 1});
        }
    }

    [[nodiscard]] double costOfLeaving(const Box& box) const {
        return costOfUnread + 0.2 * std::max(box.width(), box.height()) / letterHeight_;
    }

    /// Letters break into strokes that are about as tall as they are, not into dots and dashes.
    [[nodiscard]] double costOfPiece(const Box& box, std::size_t character) const {
        const bool isDot = box.height() < smallestLetter * letterHeight_;
        const auto first = static_cast<unsigned char>(characters_[character].text.front());
        return costOfPieces + (isDot && std::isalnum(first) != 0 ? costOfPieces : 0);
    }

    [[nodiscard]] double costOfBox(const Box& box, const Widths& expected) const {
        const double width = box.width() / letterHeight_;
        const double nearest = std::clamp(width, expected.least, expected.most);
        return costOfWidth * std::abs(std::log((width + blur) / (nearest + blur)));
    }

    [[nodiscard]] double costOfForm(const CharacterColumn& column,
                                    const std::string& character) const {
        const double height = column.box.height() / letterHeight_;
        if (isLowMark(character)) {
            return height > tallestMark ? costOfWrongHeight : 0;
        }
        if (height < smallestLetter && character != "=") {
            return costOfWrongHeight;
        }
        const bool isSmall =
            character.size() == 1 && smallLetters.find(character.front()) != std::string_view::npos;
        const bool isInParts = column.glyphs.size() > 1;
        const bool hasDot = character == "i" || character == "j";
        return (isSmall && height > tallestSmall ? costOfWrongForm : 0) +
               ((isSmall && isInParts) || (hasDot && !isInParts) ? costOfWrongForm : 0);
    }

    [[nodiscard]] double costOfGap(std::size_t column, std::size_t character) const {
        if (column == 0 || character == 0) {
            return 0;
        }
        const double gap =
            (columns_[column].box.left - columns_[column - 1].box.right) / letterHeight_;
        const double likelihood =
            columns_[column].startsSegment
                ? 1
                : std::clamp((gap - narrowGap) / (wideGap - narrowGap), 0.0, 1.0);
        return costOfSpace * (characters_[character].isAfterSpace ? 1 - likelihood : likelihood);
    }

    const std::vector<CharacterColumn>& columns_;
    const std::vector<ReadCharacter>& characters_;
    double letterHeight_;
    std::vector<Widths> widths_;
    std::size_t stride_;
    std::vector<double> costs_;
    std::vector<Step> steps_;
};

}  // namespace

std::vector<ReadCharacter> readCharactersOf(const std::string& text) {
    std::vector<ReadCharacter> characters;
    bool isAfterSpace = false;
    for (std::string& character : charactersOf(text)) {
        if (character == " ") {
            isAfterSpace = true;
            continue;
        }
        characters.push_back({std::move(character), isAfterSpace});
        isAfterSpace = false;
    }
    return characters;
}

std::optional<std::vector<ColumnReading>> alignCharacters(
    const std::vector<CharacterColumn>& columns, const std::vector<ReadCharacter>& characters,
    double letterHeight) {
    if (columns.empty() || characters.empty()) {
        return std::nullopt;
    }
    // Most lines fit well, and then few ways have to be gone.
    const auto length = static_cast<double>(std::max(columns.size(), characters.size()));
    for (const double meanCost : {highestMeanCost / 8, highestMeanCost / 3, highestMeanCost}) {
        const Alignment alignment(columns, characters, letterHeight, meanCost * length);
        if (alignment.cost() <= meanCost * length) {
            return alignment.readings();
        }
    }
    return std::nullopt;
}

}  // namespace platform::tesseract
