#include "platform/tesseract/box_index.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/tesseract/line_finder.h"

namespace platform::tesseract {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr Box page{0, 0, 1000, 1000};

}  // namespace

TEST(BoxIndex, boxes_far_away_are_not_found) {
    BoxIndex index(page, 100, 10);
    index.put(0, {10, 10, 20, 20});
    index.put(1, {900, 900, 910, 910});
    EXPECT_THAT(index.near({0, 0, 30, 30}), ElementsAre(0));
    EXPECT_THAT(index.near({400, 400, 410, 410}), IsEmpty());
}

TEST(BoxIndex, a_box_that_has_grown_is_found_where_it_reaches_once) {
    BoxIndex index(page, 100, 10);
    index.put(7, {10, 10, 20, 20});
    index.put(7, {10, 10, 700, 35});
    EXPECT_THAT(index.near({650, 30, 660, 34}), ElementsAre(7));
    EXPECT_THAT(index.near(page), ElementsAre(7));
}

TEST(BoxIndex, names_come_in_their_order) {
    BoxIndex index(page, 100, 10);
    index.put(2, {10, 10, 20, 20});
    index.put(0, {200, 10, 220, 20});
    index.put(1, {100, 10, 120, 20});
    EXPECT_THAT(index.near({0, 0, 1000, 30}), ElementsAre(0, 1, 2));
}

TEST(BoxIndex, what_lies_outside_its_bounds_is_found_at_their_edge) {
    BoxIndex index(page, 100, 10);
    index.put(0, {-50, 990, -10, 1200});
    EXPECT_THAT(index.near({0, 999, 1, 1000}), ElementsAre(0));
}

TEST(LineFinder, a_page_with_more_letters_than_a_display_shows_is_ordered_all_the_same) {
    constexpr int rows = 400;
    constexpr int columns = 600;
    std::vector<Glyph> glyphs;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            const Box box{column * 8, row * 14, column * 8 + 6, row * 14 + 10};
            glyphs.push_back({box, 30, glyphs.size()});
        }
    }
    const auto lines = LineFinder(10, {}).find(std::move(glyphs));
    ASSERT_EQ(lines.size(), static_cast<std::size_t>(rows));
    for (const TextLine& line : lines) {
        ASSERT_EQ(line.glyphsFromLeft().size(), static_cast<std::size_t>(columns));
    }
}

}  // namespace platform::tesseract
