#include "platform/tesseract/glyph_filter.h"

#include <gtest/gtest.h>

#include "drawn_letters.h"
#include "platform/tesseract/icon_filter.h"
#include "platform/tesseract/line_finder.h"

namespace platform::tesseract {

namespace {

/// A page with a row of letters, and what is drawn beside it.
class LetterPage : public DrawnLetters {
  public:
    LetterPage() : DrawnLetters(300, 140) { write(20, 30, 12); }

    void drawFrame(const Box& box) {
        draw({box.left, box.top, box.right, box.top + 1});
        draw({box.left, box.bottom - 1, box.right, box.bottom});
        draw({box.left, box.top, box.left + 1, box.bottom});
        draw({box.right - 1, box.top, box.right, box.bottom});
    }
    /// How many of the components, apart from the letters, are glyphs.
    int others() {
        const ColorPlane ground(page().width(), page().height(), {255, 255, 255});
        const BackgroundModel background(ground);
        const ConnectedComponents components(mask());
        const GlyphFilter filter(page(), ink(), mask(), components, background);
        return static_cast<int>(filter.glyphs().size()) - 12;
    }
};

}  // namespace

TEST(GlyphFilter, an_empty_frame_is_no_glyph_and_a_drawn_letter_is) {
    LetterPage page;
    page.drawFrame({40, 60, 56, 76});
    EXPECT_EQ(page.others(), 0);
    page.draw({47, 63, 49, 73});
    EXPECT_GE(page.others(), 1) << "what stands in it is none of its sides";
}

TEST(GlyphFilter, a_filled_block_larger_than_letters_is_no_glyph) {
    LetterPage page;
    page.draw({40, 60, 55, 75});
    EXPECT_EQ(page.others(), 0);
    page.draw({80, 60, 92, 70});
    EXPECT_EQ(page.others(), 1) << "as large as a letter";
}

TEST(GlyphFilter, large_letters_stay_where_they_have_company) {
    LetterPage alone;
    alone.draw({40, 60, 44, 100});
    EXPECT_EQ(alone.others(), 0);
    LetterPage heading;
    for (int letter = 0; letter < 5; ++letter) {
        const int left = 40 + 30 * letter;
        heading.draw({left, 60, left + 4, 100});
        heading.draw({left, 96, left + 20, 100});
    }
    EXPECT_EQ(heading.others(), 5);
}

TEST(GlyphFilter, what_fades_out_on_all_sides_is_no_glyph) {
    LetterPage page;
    page.draw({40, 60, 60, 80});
    for (int y = 60; y < 80; ++y) {
        for (int x = 40; x < 60; ++x) {
            const int depth = std::min({x - 39, 60 - x, y - 59, 80 - y});
            page.ink().at(x, y) = static_cast<std::uint8_t>(20 * depth);
        }
    }
    // A ring, so that it is not a block.
    for (int y = 68; y < 72; ++y) {
        for (int x = 48; x < 52; ++x) {
            page.mask().at(x, y) = 0;
            page.ink().at(x, y) = 0;
        }
    }
    EXPECT_EQ(page.others(), 0);
}

TEST(GlyphFilter, what_goes_round_letters_is_no_glyph) {
    LetterPage page;
    // Open on one side, so that it is no frame.
    page.draw({30, 50, 31, 90});
    page.draw({30, 50, 80, 51});
    page.draw({30, 89, 80, 90});
    page.draw({79, 75, 80, 90});
    page.draw({50, 62, 56, 72});
    EXPECT_EQ(page.others(), 1);
}

TEST(IconFilter, an_arrow_that_stands_alone_is_an_icon) {
    DrawnLetters drawn(300, 60);
    drawn.write(40, 30, 6);
    for (int row = 0; row < 5; ++row) {
        drawn.draw({150 + row, 21 + row, 160 - row, 22 + row});
    }
    auto rows = LineFinder(drawnLetterHeight, {}).find(drawn.glyphs());
    const ConnectedComponents components(drawn.mask());
    IconFilter(drawn.page(), drawn.ink(), components, drawnLetterHeight, drawnLetterHeight)
        .removeFrom(rows);
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].glyphsFromLeft().size(), 6U);
}

}  // namespace platform::tesseract
