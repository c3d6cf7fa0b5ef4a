#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "drawn_letters.h"
#include "platform/tesseract/character_pitch.h"
#include "platform/tesseract/glyph_dictionary.h"
#include "platform/tesseract/icon_filter.h"
#include "platform/tesseract/line_finder.h"
#include "platform/tesseract/quotation_marks.h"
#include "platform/tesseract/reading_order.h"
#include "platform/tesseract/rules.h"

namespace platform::tesseract {

namespace {

GlyphShape shapeOf(const std::vector<std::string>& rows, int rise) {
    GlyphShape shape;
    shape.width = static_cast<int>(rows.front().size());
    shape.rise = rise;
    for (const std::string& row : rows) {
        for (const char mark : row) {
            shape.pixels.push_back(mark == '#' ? 1 : 0);
        }
    }
    return shape;
}

}  // namespace

TEST(Rules, a_grid_goes_and_the_letters_in_it_stay) {
    DrawnLetters drawn(200, 80);
    drawn.draw({0, 40, 200, 41});
    drawn.draw({100, 0, 101, 80});
    drawn.write(20, 30, 4);
    const Rules rules(drawn.mask(), drawnLetterHeight, 13);
    rules.removeFrom(drawn.mask(), drawn.ink());
    EXPECT_EQ(drawn.glyphs().size(), 4U);
    EXPECT_FALSE(rules.upright().empty());
}

TEST(Rules, a_stroke_that_crosses_an_underline_stays_whole) {
    DrawnLetters drawn(200, 80);
    drawn.write(20, 30, 4);
    drawn.draw({20, 32, 100, 33});
    drawn.draw({50, 25, 52, 38});
    const Rules rules(drawn.mask(), drawnLetterHeight, 13);
    rules.removeFrom(drawn.mask(), drawn.ink());
    EXPECT_EQ(drawn.mask().at(50, 32), 1);
    EXPECT_EQ(drawn.mask().at(80, 32), 0);
}

TEST(Rules, one_of_any_length_at_any_place_is_found_once_and_whole) {
    // In capitals of 13 pixels 26 are long enough to stand, in letters of 10 45 to lie.
    constexpr double capitalHeight = 13;
    constexpr double letterHeight = 10;
    for (const int length : {25, 26, 27, 51, 52, 53, 100}) {
        for (int begin = 0; begin + length <= 160; ++begin) {
            Mask mask(3, 160);
            for (int y = begin; y < begin + length; ++y) {
                mask.at(1, y) = 1;
            }
            const std::vector<Box> upright{{1, begin, 2, begin + length}};
            EXPECT_EQ(Rules(mask, letterHeight, capitalHeight).upright(),
                      length < 26 ? std::vector<Box>() : upright)
                << length << " from " << begin;
        }
    }
    for (const int length : {44, 45, 46, 90, 91, 150}) {
        for (int begin = 0; begin + length <= 200; ++begin) {
            Mask mask(200, 3);
            std::fill(mask.row(1) + begin, mask.row(1) + begin + length, std::uint8_t{1});
            InkPlane ink = mask;
            Rules(mask, letterHeight, capitalHeight).removeFrom(mask, ink);
            EXPECT_EQ(std::count(mask.row(1), mask.row(1) + 200, 1), length < 45 ? length : 0)
                << length << " from " << begin;
        }
    }
}

TEST(LineFinder, letters_side_by_side_are_one_segment_and_rows_come_from_the_top) {
    DrawnLetters drawn(300, 100);
    drawn.write(10, 70, 5);
    drawn.write(10, 30, 3);
    const auto rows = LineFinder(drawnLetterHeight, {}).find(drawn.glyphs());
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].glyphsFromLeft().size(), 3U);
    EXPECT_EQ(rows[1].glyphsFromLeft().size(), 5U);
}

TEST(LineFinder, words_far_apart_on_one_height_are_segments_of_one_row) {
    DrawnLetters drawn(300, 60);
    drawn.write(10, 30, 4);
    drawn.write(200, 30, 4);
    const auto rows = LineFinder(drawnLetterHeight, {}).find(drawn.glyphs());
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].segments.size(), 2U);
}

TEST(LineFinder, no_segment_reaches_across_a_divider) {
    DrawnLetters drawn(300, 60);
    drawn.write(10, 30, 8);
    const auto rows = LineFinder(drawnLetterHeight, {{41, 0, 42, 60}}).find(drawn.glyphs());
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].segments.size(), 2U);
}

TEST(LineFinder, a_low_line_belongs_to_the_row_above_it) {
    DrawnLetters drawn(300, 100);
    drawn.write(10, 30, 3);
    drawn.draw({34, 32, 41, 33});
    drawn.write(42, 30, 3);
    drawn.write(10, 48, 8);
    const auto rows = LineFinder(drawnLetterHeight, {}).find(drawn.glyphs());
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].glyphsFromLeft().size(), 7U);
}

TEST(LineFinder, all_marks_in_front_of_a_word_belong_to_it) {
    DrawnLetters drawn(300, 60);
    for (int mark = 0; mark < 12; ++mark) {
        drawn.draw({10 + 5 * mark, 16, 11 + 5 * mark, 20});
    }
    drawn.write(70, 30, 3);
    const auto rows = LineFinder(drawnLetterHeight, {}).find(drawn.glyphs());
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].glyphsFromLeft().size(), 15U);
}

TEST(IconFilter, what_reaches_beyond_the_letters_on_both_sides_is_an_icon) {
    DrawnLetters drawn(300, 60);
    drawn.draw({10, 16, 28, 34});
    drawn.write(40, 30, 6);
    auto rows = LineFinder(drawnLetterHeight, {}).find(drawn.glyphs());
    const ConnectedComponents components(drawn.mask());
    IconFilter(drawn.page(), drawn.ink(), components, drawnLetterHeight, drawnLetterHeight)
        .removeFrom(rows);
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].glyphsFromLeft().size(), 6U);
}

TEST(IconFilter, a_row_of_letters_keeps_all_of_them) {
    DrawnLetters drawn(300, 60);
    drawn.write(10, 30, 1);
    drawn.write(40, 30, 6);
    auto rows = LineFinder(drawnLetterHeight, {}).find(drawn.glyphs());
    const ConnectedComponents components(drawn.mask());
    IconFilter(drawn.page(), drawn.ink(), components, drawnLetterHeight, drawnLetterHeight)
        .removeFrom(rows);
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].glyphsFromLeft().size(), 7U);
}

TEST(CharacterPitch, lines_of_code_between_prose_have_their_own_pitch) {
    DrawnLetters drawn(600, 200);
    const auto writeProse = [&](int baseline) {
        int x = 10;
        for (int index = 0; index < 40; ++index) {
            const int width = 3 + index % 3 * 3;
            drawn.draw({x, baseline - 10, x + width, baseline});
            x += width + 4;
        }
    };
    writeProse(30);
    drawn.write(10, 60, 20);
    drawn.write(10, 90, 20);
    writeProse(120);
    const auto rows = LineFinder(drawnLetterHeight, {}).find(drawn.glyphs());
    ASSERT_EQ(rows.size(), 4U);
    const auto pitches = pitchesOf(rows, 0, drawnLetterHeight);
    EXPECT_EQ(pitches[0], 0);
    EXPECT_NEAR(pitches[1], 8, 0.1);
    EXPECT_EQ(pitches[2], pitches[1]);
    EXPECT_EQ(pitches[3], 0);
    EXPECT_EQ(pitchesOf({rows[1]}, 0, drawnLetterHeight)[0], 0) << "one line is chance";
    EXPECT_EQ(pitchesOf({rows[0]}, 8, drawnLetterHeight)[0], 0) << "prose over a terminal";
    EXPECT_EQ(pitchesOf({rows[1]}, 8, drawnLetterHeight)[0], 8);
}

TEST(ReadingOrder, two_columns_of_prose_are_read_one_after_the_other) {
    DrawnLetters drawn(600, 200);
    for (int line = 0; line < 5; ++line) {
        drawn.write(10, 30 + 20 * line, 25);
        drawn.write(300, 30 + 20 * line, 25);
    }
    const BackgroundModel background(drawn.page());
    const auto rows = LineFinder(drawnLetterHeight, {}).find(drawn.glyphs());
    const auto lines =
        ReadingOrder(background, drawnLetterHeight, Typeface::proportional).sort(rows);
    ASSERT_EQ(lines.size(), 10U);
    EXPECT_LT(lines[4].segments.front().box.left, 300);
    EXPECT_EQ(lines[5].segments.front().box.left, 300);
}

TEST(ReadingOrder, the_cells_of_a_table_stay_in_their_rows) {
    DrawnLetters drawn(600, 200);
    for (int line = 0; line < 5; ++line) {
        drawn.write(10, 30 + 20 * line, 6);
        drawn.write(200, 30 + 20 * line, 5);
        drawn.write(400, 30 + 20 * line, 3);
    }
    const BackgroundModel background(drawn.page());
    const auto rows = LineFinder(drawnLetterHeight, {}).find(drawn.glyphs());
    EXPECT_EQ(ReadingOrder(background, drawnLetterHeight, Typeface::proportional).sort(rows).size(),
              5U);
}

TEST(ReadingOrder, what_stands_on_another_surface_is_read_by_itself) {
    DrawnLetters drawn(600, 200);
    drawn.drawSurface({0, 0, 150, 200}, {190, 200, 220});
    for (int line = 0; line < 5; ++line) {
        drawn.write(10, 30 + 20 * line, 6);
        drawn.write(200, 30 + 20 * line, 5);
    }
    const BackgroundModel background(drawn.page());
    const auto rows = LineFinder(drawnLetterHeight, {}).find(drawn.glyphs());
    const auto lines =
        ReadingOrder(background, drawnLetterHeight, Typeface::proportional).sort(rows);
    ASSERT_EQ(lines.size(), 10U);
    EXPECT_EQ(lines[4].segments.front().box.left, 10);
    EXPECT_EQ(lines[5].segments.front().box.left, 200);
}

TEST(GlyphDictionary, the_majority_of_the_readings_of_a_shape_counts) {
    const GlyphShape shape = shapeOf({"#", "#", "#"}, 3);
    GlyphDictionary dictionary;
    dictionary.learn(shape, "l");
    EXPECT_FALSE(dictionary.find(shape).has_value());
    dictionary.learn(shape, "l");
    dictionary.learn(shape, "1");
    EXPECT_EQ(dictionary.find(shape), "l");
}

TEST(GlyphDictionary, one_shape_at_two_heights_is_two_characters) {
    GlyphDictionary dictionary;
    for (int time = 0; time < 2; ++time) {
        dictionary.learn(shapeOf({"#", "#"}, 10), "'");
        dictionary.learn(shapeOf({"#", "#"}, 1), ",");
    }
    EXPECT_EQ(dictionary.find(shapeOf({"#", "#"}, 10)), "'");
    EXPECT_EQ(dictionary.find(shapeOf({"#", "#"}, 2)), ",");
}

TEST(QuotationMarks, a_mark_that_does_not_lean_is_straight) {
    EXPECT_EQ(quotationMarkOf("’", shapeOf({"##", "##", "##", "##"}, 10)), "'");
    EXPECT_EQ(quotationMarkOf("”", shapeOf({"#.#", "#.#", "#.#"}, 10)), "\"");
}

TEST(QuotationMarks, a_mark_that_leans_stays_curly) {
    EXPECT_EQ(quotationMarkOf("’", shapeOf({".##", ".##", "##.", "#.."}, 10)), "’");
}

TEST(QuotationMarks, a_mark_whose_ink_leans_or_lies_low_stays_curly) {
    const auto drawn = [](const std::vector<std::string>& rows) {
        InkPlane ink(8, 8);
        for (std::size_t y = 0; y < rows.size(); ++y) {
            for (std::size_t x = 0; x < rows[y].size(); ++x) {
                ink.at(static_cast<int>(x) + 2, static_cast<int>(y) + 2) =
                    static_cast<std::uint8_t>(rows[y][x] == '.' ? 0 : (rows[y][x] - '0') * 28);
            }
        }
        return ink;
    };
    const Box box{2, 2, 4, 6};
    EXPECT_EQ(quotationMarkIn(drawn({"99", "99", "99", "99"}), box, "’"), "'");
    EXPECT_EQ(quotationMarkIn(drawn({"99", "99", "88", "66"}), box, "“"), "\"");
    EXPECT_EQ(quotationMarkIn(drawn({"59", "59", "95", "93"}), box, "’"), "’");
    EXPECT_EQ(quotationMarkIn(drawn({"33", "66", "99", "99"}), box, "“"), "“");
    EXPECT_EQ(quotationMarkIn(drawn({"33", "66", "99", "99"}), box, "”"), "\"");
}

}  // namespace platform::tesseract
