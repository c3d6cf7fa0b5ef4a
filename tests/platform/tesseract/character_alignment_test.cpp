#include "platform/tesseract/character_alignment.h"

#include <gtest/gtest.h>

#include "platform/tesseract/character_sizes.h"
#include "platform/tesseract/spacing.h"

namespace platform::tesseract {

namespace {

constexpr double letterHeight = 10;
constexpr int baseline = 30;

/// A line of boxes that stand on the baseline, each one column.
class DrawnLine {
  public:
    /// `gap` in front of it, in pixels.
    DrawnLine& add(int gap, int width, int height, int rise = 0) {
        right_ += gap;
        const Box box{right_, baseline - rise - height, right_ + width, baseline - rise};
        segment_.glyphs.push_back({box, box.area(), segment_.glyphs.size()});
        segment_.box = segment_.glyphs.size() == 1 ? box : segment_.box.united(box);
        right_ += width;
        return *this;
    }
    [[nodiscard]] TextLine line() const { return {{segment_}}; }
    [[nodiscard]] std::vector<CharacterColumn> columns() const {
        return columnsOf(line(), letterHeight);
    }

  private:
    int right_ = 4;
    Segment segment_;
};

std::string readings(const DrawnLine& line, const std::string& text) {
    const auto read = readCharactersOf(text);
    const auto readings = alignCharacters(line.columns(), read, letterHeight);
    if (!readings) {
        return "does not fit";
    }
    std::string result;
    for (const ColumnReading& reading : *readings) {
        for (std::size_t index = 0; index < reading.count; ++index) {
            result += read[reading.first + index].text;
        }
        result += "|";
    }
    result.pop_back();
    return result;
}

constexpr LineMetrics metrics{baseline, letterHeight, 14, 4};

std::string corrected(const DrawnLine& line, const std::string& text) {
    const InkPlane ink(400, 60);
    Spacing spacing(ink, letterHeight);
    spacing.add(spacing.look(line.line(), metrics, text));
    return spacing.corrected(0);
}

CharacterPlace place(double top, double bottom, double width) {
    return {top, bottom, width, 0.1};
}

}  // namespace

TEST(CharacterAlignment, letters_that_touch_share_a_column) {
    DrawnLine line;
    line.add(0, 9, 10).add(1, 20, 10).add(1, 9, 10);
    EXPECT_EQ(readings(line, "anse"), "a|ns|e");
}

TEST(CharacterAlignment, a_column_that_was_not_read_stays_empty) {
    DrawnLine line;
    line.add(0, 9, 10).add(1, 2, 2).add(1, 9, 10);
    EXPECT_EQ(readings(line, "ae"), "a||e");
}

TEST(CharacterAlignment, spaces_stand_in_gaps) {
    DrawnLine line;
    line.add(0, 9, 10).add(1, 14, 10).add(6, 14, 10).add(1, 9, 10);
    EXPECT_EQ(readings(line, "ar re"), "a|r|r|e");
    EXPECT_EQ(readings(line, "acr rce"), "a|cr|rc|e");
}

TEST(CharacterAlignment, where_widths_leave_a_doubt_the_space_decides) {
    DrawnLine line;
    line.add(0, 14, 10).add(5, 14, 10);
    EXPECT_EQ(readings(line, "nn n"), "nn|n");
    EXPECT_EQ(readings(line, "n nn"), "n|nn");
}

TEST(CharacterAlignment, of_columns_too_many_those_are_left_out_that_the_spaces_do_not_fit) {
    DrawnLine line;
    line.add(0, 9, 10).add(8, 9, 10).add(1, 9, 10);
    EXPECT_EQ(readings(line, "n n"), "n|n|");
    EXPECT_EQ(readings(line, "nn"), "|n|n");
}

TEST(CharacterAlignment, where_widths_leave_a_doubt_the_height_decides) {
    DrawnLine line;
    line.add(0, 14, 14).add(1, 14, 10);
    EXPECT_EQ(readings(line, "nbn"), "nb|n");
    DrawnLine other;
    other.add(0, 14, 10).add(1, 14, 14);
    EXPECT_EQ(readings(other, "nbn"), "n|bn");
}

TEST(CharacterAlignment, what_is_much_shorter_than_its_columns_does_not_fit) {
    DrawnLine line;
    for (int index = 0; index < 12; ++index) {
        line.add(2, 9, 10);
    }
    EXPECT_EQ(readings(line, "ab"), "does not fit");
}

TEST(Spacing, a_wide_gap_is_a_space_even_beside_letters_that_touch) {
    DrawnLine line;
    line.add(0, 20, 10).add(1, 9, 10).add(9, 9, 10).add(1, 9, 10);
    EXPECT_EQ(corrected(line, "ansea"), "ans ea");
}

TEST(Spacing, the_room_beside_a_one_is_no_space) {
    DrawnLine line;
    line.add(0, 9, 14).add(2, 9, 14).add(2, 9, 14).add(2, 9, 14).add(7, 5, 14).add(2, 9, 14);
    EXPECT_EQ(corrected(line, "782418"), "782418");
    EXPECT_EQ(corrected(line, "782438"), "7824 38");
}

TEST(Spacing, a_space_beside_punctuation_without_room_for_it_is_none) {
    DrawnLine line;
    line.add(0, 9, 10).add(1, 2, 2).add(1, 9, 10).add(1, 9, 10);
    EXPECT_EQ(corrected(line, "s. gn"), "s.gn");
}

TEST(Spacing, a_dash_and_a_full_stop_that_were_not_read_are_put_in) {
    DrawnLine line;
    line.add(0, 7, 2, 5);
    for (int figure = 0; figure < 4; ++figure) {
        line.add(2, 9, 14);
    }
    line.add(2, 2, 2);
    EXPECT_EQ(corrected(line, "8420"), "-8420.");
}

TEST(CharacterSizes, a_letter_as_tall_as_the_capitals_of_its_line_is_a_capital) {
    CharacterSizes sizes;
    for (const char* letter : {"a", "n", "e"}) {
        sizes.learn(letter, place(1, 0, 0.9));
    }
    for (const char* letter : {"B", "d", "5"}) {
        sizes.learn(letter, place(1.4, 0, 0.9));
    }
    EXPECT_EQ(sizes.corrected("w", place(1.4, 0, 1.5), ""), "W");
    EXPECT_EQ(sizes.corrected("S", place(1, 0, 0.9), ""), "s");
    EXPECT_EQ(sizes.corrected("w", place(1.2, 0, 1.5), ""), "w") << "neither";
    EXPECT_EQ(sizes.corrected("w", place(1.4, 0, 1.5), "a"), "w") << "in a word";
}

TEST(CharacterSizes, a_line_that_shows_no_capitals_decides_nothing) {
    CharacterSizes sizes;
    for (const char* letter : {"a", "n", "e"}) {
        sizes.learn(letter, place(1, 0, 0.9));
    }
    EXPECT_EQ(sizes.corrected("w", place(1.4, 0, 1.5), ""), "w");
}

TEST(CharacterSizes, a_comma_reaches_below_the_baseline_and_a_full_stop_does_not) {
    const CharacterSizes sizes;
    EXPECT_EQ(sizes.corrected(",", place(0.2, 0, 0.2), ""), ".");
    EXPECT_EQ(sizes.corrected(".", place(0.2, -0.3, 0.2), ""), ",");
    EXPECT_EQ(sizes.corrected(",", place(0.2, -0.3, 0.2), ""), ",");
}

TEST(CharacterSizes, marks_are_known_by_their_place) {
    EXPECT_EQ(markAt(place(0, -0.1, 0.9)), "_");
    EXPECT_EQ(markAt(place(0.6, 0.5, 0.6)), "-");
    EXPECT_EQ(markAt(place(0.2, 0, 0.2)), ".");
    EXPECT_EQ(markAt(place(1, 0, 0.2)), "");
    EXPECT_EQ(markAt(place(1.3, 1.1, 0.2)), "") << "a dot above";
}

}  // namespace platform::tesseract
