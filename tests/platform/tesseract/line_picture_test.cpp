#include "platform/tesseract/line_picture.h"

#include <gtest/gtest.h>

#include "drawn_letters.h"
#include "platform/tesseract/character_grid.h"
#include "platform/tesseract/line_finder.h"
#include "platform/tesseract/resampling.h"

namespace platform::tesseract {

namespace {

constexpr LineMetrics metrics{30, drawnLetterHeight, 14, 4};

InkPlane painted(DrawnLetters& drawn, std::size_t row) {
    const ConnectedComponents components(drawn.mask());
    const auto rows = LineFinder(drawnLetterHeight, {}).find(drawn.glyphs());
    return LinePainter(drawn.ink(), components, drawnLetterHeight).paint(rows[row], metrics, {});
}

int darkest(const InkPlane& picture, int row) {
    return *std::min_element(picture.row(row), picture.row(row) + picture.width());
}

}  // namespace

TEST(LinePainter, a_line_is_dark_on_white_and_as_high_as_asked) {
    DrawnLetters drawn(300, 60);
    drawn.write(20, 30, 6);
    const InkPlane picture = painted(drawn, 0);
    EXPECT_EQ(picture.height(), 36);
    EXPECT_LT(darkest(picture, 18), 40);
    EXPECT_EQ(darkest(picture, 0), 255);
}

TEST(LinePainter, pale_words_become_as_dark_as_others) {
    DrawnLetters drawn(300, 60);
    drawn.write(20, 30, 6);
    for (int y = 20; y < 30; ++y) {
        for (int x = 20; x < 80; ++x) {
            drawn.ink().at(x, y) = static_cast<std::uint8_t>(drawn.ink().at(x, y) / 4);
        }
    }
    EXPECT_LT(darkest(painted(drawn, 0), 18), 40);
}

TEST(LinePainter, wide_gaps_are_shortened) {
    DrawnLetters near(900, 60);
    near.write(20, 30, 4);
    near.write(100, 30, 4);
    DrawnLetters far(900, 60);
    far.write(20, 30, 4);
    far.write(600, 30, 4);
    EXPECT_EQ(painted(near, 0).width(), painted(far, 0).width());
}

TEST(LinePainter, the_ink_of_other_glyphs_is_left_out) {
    const auto drawLetters = [](DrawnLetters& page) {
        page.write(20, 30, 6);
        page.draw({80, 20, 82, 30});
        page.draw({80, 28, 92, 30});
    };
    DrawnLetters drawn(300, 60);
    drawLetters(drawn);
    // A stroke from a line above hangs into the last letter's box.
    drawn.draw({86, 2, 88, 25});
    const ConnectedComponents components(drawn.mask());
    auto rows = LineFinder(drawnLetterHeight, {}).find(drawn.glyphs());
    for (TextLine& row : rows) {
        for (Segment& segment : row.segments) {
            std::erase_if(segment.glyphs,
                          [](const Glyph& glyph) { return glyph.box.height() > 20; });
        }
    }
    std::erase_if(rows, [](const TextLine& row) { return row.segments.front().glyphs.empty(); });
    const InkPlane picture =
        LinePainter(drawn.ink(), components, drawnLetterHeight).paint(rows[0], metrics, {});
    DrawnLetters without(300, 60);
    drawLetters(without);
    const InkPlane expected = painted(without, 0);
    ASSERT_EQ(picture.width(), expected.width());
    EXPECT_TRUE(std::equal(picture.row(18), picture.row(18) + picture.width(), expected.row(18)));
}

TEST(LineMetrics, lines_of_one_size_share_their_ascent) {
    DrawnLetters drawn(300, 160);
    for (int line = 0; line < 3; ++line) {
        drawn.write(20, 30 + 40 * line, 6);
        drawn.draw({100, 14 + 40 * line, 104, 30 + 40 * line});
    }
    drawn.write(20, 150, 6);
    const auto rows = LineFinder(drawnLetterHeight, {}).find(drawn.glyphs());
    ASSERT_EQ(rows.size(), 4U);
    const auto all = measureLines(rows, drawnLetterHeight, Typeface::proportional);
    EXPECT_DOUBLE_EQ(all[3].ascent, all[0].ascent);
    EXPECT_DOUBLE_EQ(all[3].letterHeight, drawnLetterHeight);
}

TEST(CharacterGrid, characters_that_touch_have_a_cell_each) {
    DrawnLetters drawn(300, 60);
    drawn.write(20, 30, 6);
    drawn.draw({70, 20, 84, 30});
    const CharacterGrid grid(drawn.glyphs(), 8, drawnLetterHeight);
    EXPECT_EQ(grid.cells().size(), 8U);
}

TEST(Resampling, a_flat_picture_keeps_its_value) {
    const InkPlane flat(20, 20, 90);
    const InkPlane scaled = resample(flat, 0, 0, 50, 50, 2.5, 2.5, ResamplingKernel::lanczos);
    EXPECT_NEAR(scaled.at(25, 25), 90, 1);
    const InkPlane smaller = resample(flat, 0, 0, 10, 10, 0.5, 0.5, ResamplingKernel::cubic);
    EXPECT_NEAR(smaller.at(5, 5), 90, 1);
}

}  // namespace platform::tesseract
