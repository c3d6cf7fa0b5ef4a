#include "platform/tesseract/reading_merge.h"

#include <algorithm>
#include <string>

#include "platform/tesseract/characters.h"

namespace platform::tesseract {

namespace {

using Characters = std::vector<std::string>;

constexpr int costOfUnmatched = 2;
constexpr int costOfOther = 2;
/// A space is seldom a character that was mistaken for it.
constexpr int costOfSpace = 3;

int costOfPair(const std::string& one, const std::string& other) {
    if (one == other) {
        return 0;
    }
    return one == " " || other == " " ? costOfSpace : costOfOther;
}

/// Where a space of one reading is a space of the other, too: its place in each.
struct Cut {
    std::size_t first = 0;
    std::size_t second = 0;
};

/// From left to right; the last is behind the ends of both.
std::vector<Cut> cutsOf(const Characters& first, const Characters& second) {
    const std::size_t columns = second.size() + 1;
    std::vector<int> costs((first.size() + 1) * columns);
    const auto costAt = [&](std::size_t row, std::size_t column) -> int& {
        return costs[row * columns + column];
    };
    for (std::size_t row = 0; row <= first.size(); ++row) {
        for (std::size_t column = 0; column <= second.size(); ++column) {
            if (row == 0 || column == 0) {
                costAt(row, column) = costOfUnmatched * static_cast<int>(row + column);
                continue;
            }
            costAt(row, column) = std::min(
                {costAt(row - 1, column - 1) + costOfPair(first[row - 1], second[column - 1]),
                 costAt(row - 1, column) + costOfUnmatched,
                 costAt(row, column - 1) + costOfUnmatched});
        }
    }
    std::vector<Cut> cuts{{first.size(), second.size()}};
    std::size_t row = first.size();
    std::size_t column = second.size();
    while (row > 0 && column > 0) {
        const int pair = costOfPair(first[row - 1], second[column - 1]);
        if (costAt(row, column) == costAt(row - 1, column - 1) + pair) {
            --row;
            --column;
            if (pair == 0 && first[row] == " ") {
                cuts.push_back({row, column});
            }
        } else if (costAt(row, column) == costAt(row - 1, column) + costOfUnmatched) {
            --row;
        } else {
            --column;
        }
    }
    std::reverse(cuts.begin(), cuts.end());
    return cuts;
}

/// Hands out a reading piece by piece.
class Pieces {
  public:
    struct Piece {
        std::string text;
        std::vector<int> confidences;
        int leastConfidence = 0;
    };

    Pieces(const LineReading& reading, const Characters& characters)
        : reading_(reading), characters_(characters) {}

    /// From behind the cut before to `end`.
    Piece next(std::size_t end) {
        Piece piece;
        for (; place_ < end; ++place_) {
            if (characters_[place_] == " ") {
                piece.confidences.push_back(confidenceOf(word_++));
            }
            piece.text += characters_[place_];
        }
        piece.confidences.push_back(confidenceOf(word_++));
        piece.leastConfidence =
            *std::min_element(piece.confidences.begin(), piece.confidences.end());
        ++place_;
        return piece;
    }

  private:
    [[nodiscard]] int confidenceOf(std::size_t word) const {
        return word < reading_.wordConfidences.size() ? reading_.wordConfidences[word]
                                                      : reading_.confidence;
    }

    const LineReading& reading_;
    const Characters& characters_;
    std::size_t place_ = 0;
    std::size_t word_ = 0;
};

}  // namespace

LineReading mergedReading(const LineReading& first, const LineReading& second) {
    const LineReading& surer = second.confidence > first.confidence ? second : first;
    const LineReading& other = &surer == &first ? second : first;
    if (first.text.empty() || second.text.empty() || first.text == second.text) {
        LineReading merged = surer.text.empty() ? other : surer;
        merged.confidence = surer.confidence;
        return merged;
    }
    const Characters firstCharacters = charactersOf(first.text);
    const Characters secondCharacters = charactersOf(second.text);
    Pieces firstPieces(first, firstCharacters);
    Pieces secondPieces(second, secondCharacters);
    LineReading merged{{}, surer.confidence, {}, {}};
    for (const Cut& cut : cutsOf(firstCharacters, secondCharacters)) {
        const Pieces::Piece one = firstPieces.next(cut.first);
        const Pieces::Piece two = secondPieces.next(cut.second);
        const Pieces::Piece& better = two.leastConfidence > one.leastConfidence ? two : one;
        merged.text += (merged.wordConfidences.empty() ? "" : " ") + better.text;
        merged.wordConfidences.insert(merged.wordConfidences.end(), better.confidences.begin(),
                                      better.confidences.end());
    }
    for (const LineReading* reading : {&surer, &other}) {
        if (reading->text != merged.text) {
            merged.alternatives.push_back(reading->text);
        }
    }
    return merged;
}

}  // namespace platform::tesseract
