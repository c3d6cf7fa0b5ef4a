#include "platform/tesseract/cell_marks.h"

#include <gtest/gtest.h>

#include <vector>

namespace platform::tesseract {

namespace {

constexpr double letterHeight = 7;
constexpr double pitch = 8;

/// `rise` is how many of the rows are above the baseline, or more.
std::string mark(const std::vector<std::string>& rows, int rise) {
    GlyphShape shape;
    shape.width = static_cast<int>(rows.front().size());
    shape.rise = rise;
    for (const std::string& row : rows) {
        for (const char pixel : row) {
            shape.pixels.push_back(pixel == '#' ? 1 : 0);
        }
    }
    return markOf(shape, letterHeight, pitch);
}

}  // namespace

TEST(CellMarks, dots_are_told_by_number_and_place) {
    EXPECT_EQ(mark({"##", "##"}, 2), ".");
    EXPECT_EQ(mark({".#.", "###", ".#."}, 2), ".");
    EXPECT_EQ(mark({"##", "##", "..", "..", "..", "##", "##"}, 7), ":");
    EXPECT_EQ(mark({"##", "##", "..", "..", "##", "##", ".#", "#."}, 6), ";");
    EXPECT_EQ(mark({"##", "##"}, 10), "") << "too high";
}

TEST(CellMarks, a_letter_with_a_dot_is_no_colon) {
    EXPECT_EQ(mark({"##", "##", "..", "##", "##", "##", "##", "##", "##", "##"}, 10), "");
    EXPECT_EQ(mark({"##", "##", "##", "##", "##", "##", "..", "##", "##"}, 9), "");
}

TEST(CellMarks, flat_strokes_are_told_by_their_height) {
    EXPECT_EQ(mark({"#######"}, 0), "_");
    EXPECT_EQ(mark({"#####"}, 4), "-");
    EXPECT_EQ(mark({"######", "......", "######"}, 5), "=");
}

TEST(CellMarks, a_wave_is_a_tilde_and_no_dash) {
    EXPECT_EQ(mark({".##..#", "#..##."}, 4), "~");
    EXPECT_EQ(mark({".##...#", "#..#..#", "#...##."}, 5), "~");
}

TEST(CellMarks, two_legs_under_the_capitals_height_are_a_caret_and_a_star_is_none) {
    EXPECT_EQ(mark({"..#..", ".#.#.", "#...#"}, 9), "^");
    EXPECT_EQ(mark({"..#..", ".#.#.", "#...#"}, 4), "") << "too low";
    EXPECT_EQ(mark({".#.#.", "..#..", "#####", "..#..", ".#.#."}, 9), "");
}

TEST(CellMarks, quotes_hang_below_the_capitals_height) {
    EXPECT_EQ(mark({"#.#", "#.#", "#.#"}, 10), "\"");
    EXPECT_EQ(mark({"#", "#", "#"}, 10), "'");
    EXPECT_EQ(mark({"#", "#", "#"}, 3), "") << "on the baseline";
}

TEST(CellMarks, letters_are_no_marks) {
    EXPECT_EQ(markOf({}, letterHeight, pitch), "");
    EXPECT_EQ(mark({"#.##.", "##..#", "#...#", "#...#", "#...#", "#...#", "#...#"}, 7), "");
    EXPECT_EQ(mark({"##", "##", "##", "##", "##", "##", "##", "##", "##", "##"}, 10), "");
}

}  // namespace platform::tesseract
