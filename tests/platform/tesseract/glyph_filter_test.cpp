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
    LetterPage() : DrawnLetters(300, 140), ground_(300, 140, {255, 255, 255}) { write(20, 30, 12); }

    void drawFrame(const Box& box) {
        draw({box.left, box.top, box.right, box.top + 1});
        draw({box.left, box.bottom - 1, box.right, box.bottom});
        draw({box.left, box.top, box.left + 1, box.bottom});
        draw({box.right - 1, box.top, box.right, box.bottom});
    }
    void drawSurface(const Box& box, Color color) {
        DrawnLetters::drawSurface(box, color);
        fill(ground_, box, color);
    }
    /// How many of the components, apart from the letters, are glyphs.
    int others() {
        const BackgroundModel background(ground_);
        const ConnectedComponents components(mask());
        const GlyphFilter filter(page(), ink(), mask(), components, background);
        return static_cast<int>(filter.glyphs().size()) - 12;
    }

  private:
    ColorPlane ground_;
};

constexpr Color paleBlue{180, 200, 240};

/// What the icon filter leaves of the drawn rows.
std::vector<TextLine> withoutIcons(const DrawnLetters& drawn) {
    auto rows = LineFinder(drawnLetterHeight, {}).find(drawn.glyphs());
    const ConnectedComponents components(drawn.mask());
    IconFilter(drawn.page(), drawn.ink(), components, drawnLetterHeight, drawnLetterHeight)
        .removeFrom(rows);
    return rows;
}

/// A list of five rows of words; in front of two of them stands an icon, in front of the others a
/// sign that could be a letter.
DrawnLetters listOfFiles(Color signs) {
    DrawnLetters drawn(300, 240);
    for (int row = 0; row < 5; ++row) {
        const int baseline = 30 + 40 * row;
        if (row < 2) {
            drawn.draw({10, baseline - 14, 28, baseline + 4}, signs);
        } else {
            drawn.draw({15, baseline - 10, 23, baseline}, signs);
        }
        drawn.write(40, baseline, 4);
        drawn.write(80, baseline, 4);
    }
    return drawn;
}

/// Words of four letters, as many as `words`, and in front of them a block twice as high that
/// stands on their baseline.
DrawnLetters blockBesideWords(int words) {
    DrawnLetters drawn(300, 100);
    drawn.draw({10, 10, 30, 30});
    for (int word = 0; word < words; ++word) {
        drawn.write(40 + 50 * word, 30, 4);
    }
    return drawn;
}

/// How many glyphs the filter leaves of each row.
std::vector<std::size_t> countsWithoutIcons(const DrawnLetters& drawn) {
    std::vector<std::size_t> counts;
    for (const TextLine& row : withoutIcons(drawn)) {
        counts.push_back(row.glyphsFromLeft().size());
    }
    return counts;
}

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
    const Box box{40, 60, 52, 72};
    page.draw(box);
    EXPECT_EQ(page.others(), 1) << "as sharp as a letter";
    for (int y = box.top; y < box.bottom; ++y) {
        for (int x = box.left; x < box.right; ++x) {
            const int depth =
                1 + std::min({x - box.left, box.right - 1 - x, y - box.top, box.bottom - 1 - y});
            page.ink().at(x, y) = static_cast<std::uint8_t>(40 * depth);
        }
    }
    EXPECT_EQ(page.others(), 0);
}

TEST(GlyphFilter, what_goes_round_letters_is_no_glyph) {
    LetterPage page;
    // Open on one side, so that it is no frame.
    page.draw({30, 50, 31, 74});
    page.draw({30, 50, 70, 51});
    page.draw({30, 73, 70, 74});
    page.draw({69, 64, 70, 74});
    EXPECT_EQ(page.others(), 1);
    page.draw({46, 57, 52, 67});
    EXPECT_EQ(page.others(), 1) << "the letter, and no longer what is round it";
}

TEST(GlyphFilter, the_edge_between_two_surfaces_is_no_glyph) {
    LetterPage page;
    page.drawSurface({0, 100, 300, 140}, paleBlue);
    page.draw({40, 66, 100, 74});
    EXPECT_EQ(page.others(), 1) << "on one surface";
    page.draw({140, 96, 200, 104});
    EXPECT_EQ(page.others(), 1);
}

TEST(GlyphFilter, a_letter_may_stand_on_two_surfaces_and_what_is_longer_is_their_edge) {
    LetterPage page;
    page.drawSurface({0, 100, 300, 140}, paleBlue);
    page.draw({80, 95, 86, 105});
    EXPECT_EQ(page.others(), 1);
    page.draw({120, 99, 160, 101}, {218, 228, 248});
    EXPECT_EQ(page.others(), 1);
}

TEST(IconFilter, signs_of_another_color_in_a_column_of_icons_are_icons) {
    std::size_t glyphs = 0;
    for (const TextLine& row : withoutIcons(listOfFiles({200, 40, 40}))) {
        glyphs += row.glyphsFromLeft().size();
    }
    EXPECT_EQ(glyphs, 5U * 8);
}

TEST(IconFilter, signs_of_the_texts_color_in_a_column_of_icons_may_be_letters) {
    std::size_t glyphs = 0;
    for (const TextLine& row : withoutIcons(listOfFiles({0, 0, 0}))) {
        glyphs += row.glyphsFromLeft().size();
    }
    EXPECT_EQ(glyphs, 5U * 8 + 3);
}

TEST(IconFilter, what_is_much_larger_than_the_words_beside_it_is_an_icon) {
    EXPECT_EQ(countsWithoutIcons(blockBesideWords(2)), (std::vector<std::size_t>{8}));
    EXPECT_EQ(countsWithoutIcons(blockBesideWords(1)), (std::vector<std::size_t>{5}))
        << "beside a single word it may be its first letter";
}

TEST(IconFilter, what_touches_a_large_icon_within_its_columns_is_a_piece_of_it) {
    DrawnLetters touching = blockBesideWords(2);
    touching.draw({16, 32, 24, 42});
    touching.write(40, 42, 4);
    EXPECT_EQ(countsWithoutIcons(touching), (std::vector<std::size_t>{8, 4}));
    DrawnLetters apart = blockBesideWords(2);
    apart.draw({16, 42, 24, 52});
    apart.write(40, 52, 4);
    EXPECT_EQ(countsWithoutIcons(apart), (std::vector<std::size_t>{8, 5}));
}

TEST(IconFilter, an_arrow_that_stands_alone_is_an_icon) {
    DrawnLetters drawn(300, 60);
    drawn.write(40, 30, 6);
    for (int row = 0; row < 5; ++row) {
        drawn.draw({150 + row, 21 + row, 160 - row, 22 + row});
    }
    const auto rows = withoutIcons(drawn);
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].glyphsFromLeft().size(), 6U);
}

}  // namespace platform::tesseract
