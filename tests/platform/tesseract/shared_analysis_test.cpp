#include <gtest/gtest.h>

#include <random>

#include "drawn_page.h"
#include "picture_set.h"
#include "platform/tesseract/background_model.h"
#include "platform/tesseract/connected_components.h"
#include "platform/tesseract/ink_map.h"
#include "platform/tesseract/page_analysis.h"
#include "platform/tesseract/thread_pair.h"

// What two threads find is what one finds, to the last pixel.

namespace platform::tesseract {

namespace {

/// Runs `look` on one thread, and on two.
template <class Look>
auto byOneAndTwo(const Look& look) {
    auto one = look();
    ThreadPair pair;
    const ThreadPair::Use use(&pair);
    return std::pair(std::move(one), look());
}

/// Flat patches of a few near colours, from one pixel to some more than a block of a surface.
ColorPlane patches(int width, int height, unsigned seed) {
    std::minstd_rand random(seed);
    ColorPlane page(width, height, {200, 200, 200});
    std::uniform_int_distribution<int> x(0, width - 1);
    std::uniform_int_distribution<int> y(0, height - 1);
    std::uniform_int_distribution<int> side(1, 14);
    std::uniform_int_distribution<int> shade(0, 6);
    for (int patch = 0; patch < width * height / 40; ++patch) {
        const int left = x(random);
        const int top = y(random);
        const Box box{left, top, std::min(width, left + 2 * side(random)),
                      std::min(height, top + side(random))};
        const auto value = static_cast<std::uint8_t>(196 + shade(random));
        const bool isFar = shade(random) == 0;
        fill(page, box, {value, value, static_cast<std::uint8_t>(isFar ? 40 : value)});
    }
    fill(page, {0, 0, std::min(width, 40), std::min(height, 200)}, {90, 90, 90});
    // Dithered, so that what belongs to no flat block does not become one with its neighbours.
    for (int row = 0; row < height; ++row) {
        for (int column = row % 2; column < width; column += 2) {
            page.at(column, row).red = static_cast<std::uint8_t>(page.at(column, row).red + 2);
        }
    }
    return page;
}

struct Seen {
    std::vector<Color> colors;
    std::vector<std::uint16_t> distances;
    std::vector<std::uint8_t> ink;
    std::vector<std::uint8_t> mask;
};

Seen seenIn(const ColorPlane& page) {
    Seen seen;
    const BackgroundModel background(page);
    const InkPlane ink = measureInk(page, background);
    const Mask mask = binarize(ink);
    for (int y = 0; y < page.height(); ++y) {
        for (int x = 0; x < page.width(); ++x) {
            seen.colors.push_back(background.colors().at(x, y));
            seen.distances.push_back(background.distances(y)[x]);
            seen.ink.push_back(ink.at(x, y));
            seen.mask.push_back(mask.at(x, y));
        }
    }
    return seen;
}

void expectSame(const LineMetrics& one, const LineMetrics& two) {
    EXPECT_EQ(one.baseline, two.baseline);
    EXPECT_EQ(one.letterHeight, two.letterHeight);
    EXPECT_EQ(one.ascent, two.ascent);
    EXPECT_EQ(one.descent, two.descent);
}

void expectSame(const ConnectedComponents& one, const ConnectedComponents& two, std::size_t index) {
    const Component& component = one.all()[index];
    const Component& other = two.all()[index];
    EXPECT_EQ(component.box, other.box);
    EXPECT_EQ(component.pixelCount, other.pixelCount);
    ASSERT_EQ(component.runCount, other.runCount);
    EXPECT_TRUE(std::equal(one.runsBegin(component), one.runsEnd(component), two.runsBegin(other),
                           [](const Run& run, const Run& otherRun) {
                               return run.y == otherRun.y && run.left == otherRun.left &&
                                      run.right == otherRun.right;
                           }));
}

void expectSame(const TextLine& one, const TextLine& two) {
    const auto glyphs = one.glyphsFromLeft();
    const auto others = two.glyphsFromLeft();
    ASSERT_EQ(glyphs.size(), others.size());
    for (std::size_t index = 0; index < glyphs.size(); ++index) {
        EXPECT_EQ(glyphs[index].box, others[index].box);
        EXPECT_EQ(glyphs[index].pixelCount, others[index].pixelCount);
        EXPECT_EQ(glyphs[index].component, others[index].component);
    }
}

}  // namespace

TEST(SharedAnalysis, background_ink_and_marks_are_those_that_one_thread_finds) {
    // Flat ones are cut into bands that are lower than the blocks of a surface.
    for (const auto& [width, height] :
         {std::pair{12'000, 9}, {3000, 21}, {400, 300}, {24'001, 5}, {9, 5000}}) {
        const ColorPlane page = patches(width, height, 7);
        const auto [one, two] = byOneAndTwo([&] { return seenIn(page); });
        EXPECT_EQ(one.colors, two.colors) << width;
        EXPECT_EQ(one.distances, two.distances) << width;
        EXPECT_EQ(one.ink, two.ink) << width;
        EXPECT_EQ(one.mask, two.mask) << width;
        EXPECT_NE(std::count(one.distances.begin(), one.distances.end(), 0), 0) << width;
        EXPECT_NE(std::count(one.mask.begin(), one.mask.end(), 1), 0) << width;
    }
}

TEST(SharedAnalysis, components_are_those_that_one_thread_finds) {
    std::minstd_rand random(11);
    // Of a hundred pixels: sparse ones, such whose components reach through many rows, full ones.
    for (const unsigned marked : {1U, 30U, 45U, 60U, 97U, 100U}) {
        Mask mask(400, 300);
        for (int y = 0; y < mask.height(); ++y) {
            // Rows without a mark lie between bands, too.
            for (int x = 0; x < mask.width() && y % 70 != 37; ++x) {
                mask.at(x, y) = random() % 100 < marked ? 1 : 0;
            }
        }
        const auto [one, two] = byOneAndTwo([&] { return ConnectedComponents(mask); });
        ASSERT_EQ(one.all().size(), two.all().size()) << marked;
        ASSERT_GT(one.all().size(), 0U) << marked;
        for (std::size_t index = 0; index < one.all().size(); ++index) {
            expectSame(one, two, index);
        }
    }
}

TEST(SharedAnalysis, pages_have_the_lines_that_one_thread_finds) {
    for (const char* name : {"table01", "dialog02", "twocol03", "xterm01", "mixed02", "empty03"}) {
        const auto picture =
            bench::loadPicture(LUMAFRAME_TEST_DATA "/ocr/" + std::string(name) + ".png");
        ASSERT_TRUE(picture) << name;
        const auto [one, two] =
            byOneAndTwo([&] { return std::make_unique<PageAnalysis>(picture.value()); });
        ASSERT_EQ(one->lines().size(), two->lines().size()) << name;
        EXPECT_EQ(one->grounds(), two->grounds()) << name;
        EXPECT_EQ(one->pitches(), two->pitches()) << name;
        EXPECT_EQ(one->letterHeight(), two->letterHeight()) << name;
        for (std::size_t line = 0; line < one->lines().size(); ++line) {
            expectSame(one->lines()[line], two->lines()[line]);
            expectSame(one->metrics()[line], two->metrics()[line]);
        }
        for (int y = 0; y < picture.value().height(); ++y) {
            ASSERT_TRUE(std::equal(one->ink().row(y), one->ink().row(y) + one->ink().width(),
                                   two->ink().row(y)))
                << name << ", row " << y;
        }
    }
}

}  // namespace platform::tesseract
