#include "platform/tesseract/cell_consensus.h"

#include <gtest/gtest.h>

#include "drawn_letters.h"
#include "platform/tesseract/line_finder.h"

namespace platform::tesseract {

namespace {

constexpr double pitch = 10;
constexpr int lineHeight = 30;

/// A page of cells; each character of a pattern is drawn as a box of its own height, '.' is empty.
class DrawnCells {
  public:
    explicit DrawnCells(const std::vector<std::string>& patterns)
        : drawn_(400, lineHeight * static_cast<int>(patterns.size() + 1)) {
        int baseline = lineHeight;
        for (const std::string& pattern : patterns) {
            for (std::size_t cell = 0; cell < pattern.size(); ++cell) {
                if (pattern[cell] != '.') {
                    const int left = 12 + static_cast<int>(pitch) * static_cast<int>(cell);
                    drawn_.draw({left, baseline - 10 - (pattern[cell] - 'a'), left + 6, baseline});
                }
            }
            baseline += lineHeight;
        }
        rows_ = LineFinder(drawnLetterHeight, {}).find(drawn_.glyphs());
    }

    /// What becomes of `readings`, one for each row, each read with the same confidence.
    std::vector<std::string> corrected(const std::vector<std::string>& readings, int confidence) {
        CellConsensus cells(drawn_.ink(), pitch, drawnLetterHeight);
        for (std::size_t index = 0; index < rows_.size(); ++index) {
            LineReading reading;
            reading.text = readings[index];
            reading.confidence = confidence;
            const auto words = std::count(reading.text.begin(), reading.text.end(), ' ') + 1;
            reading.wordConfidences.assign(static_cast<std::size_t>(words), confidence);
            const double baseline = lineHeight * static_cast<double>(index + 1);
            cells.add(rows_[index], {baseline, drawnLetterHeight, 16, 4}, reading);
        }
        std::vector<std::string> texts;
        for (std::size_t index = 0; index < rows_.size(); ++index) {
            texts.push_back(cells.corrected(index));
        }
        return texts;
    }
    std::string corrected(const std::string& reading) { return corrected({reading}, 90).front(); }

  private:
    DrawnLetters drawn_;
    std::vector<TextLine> rows_;
};

}  // namespace

TEST(CellConsensus, cells_that_look_the_same_are_the_same_character) {
    DrawnCells cells({"abcab", "abcab", "abcab"});
    EXPECT_EQ(cells.corrected({"nlxnl", "nlxnl", "n1xnl"}, 90)[2], "nlxnl");
}

TEST(CellConsensus, unsure_readings_teach_nothing) {
    DrawnCells cells({"abcab", "abcab", "abcab"});
    EXPECT_EQ(cells.corrected({"nlxnl", "nlxnl", "n1xnl"}, 60)[2], "n1xnl");
}

TEST(CellConsensus, an_empty_cell_is_a_space) {
    DrawnCells cells({"abc.abd"});
    EXPECT_EQ(cells.corrected("nlxnly"), "nlx nly");
    EXPECT_EQ(cells.corrected("nl xnly"), "nlx nly");
}

TEST(CellConsensus, a_tall_shape_is_no_dash) {
    DrawnCells cells({"abcab"});
    EXPECT_EQ(cells.corrected("n-lxnl"), "nlxnl");
    EXPECT_EQ(cells.corrected("nlxn-l"), "nlxnl");
    EXPECT_EQ(cells.corrected("-nlxnl"), "nlxnl");
}

TEST(CellConsensus, a_zero_with_a_dot_is_a_zero_and_an_at_sign_beside_a_name_stays) {
    DrawnCells cells({"abca"});
    EXPECT_EQ(cells.corrected("=@;9"), "=0;9");
    EXPECT_EQ(cells.corrected("1©24"), "1024");
    EXPECT_EQ(cells.corrected("a@b4"), "a@b4");
    EXPECT_EQ(cells.corrected("@165"), "@165");
}

}  // namespace platform::tesseract
