#include "platform/tesseract/scale_merge.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "drawn_page.h"

namespace platform::tesseract {

namespace {

constexpr Color white{255, 255, 255};
constexpr Color black{0, 0, 0};

ReadLine line(const std::string& text, Box box, int confidence) {
    return {box, box.height() / 2.0, 1, confidence, static_cast<int>(text.size()), 1, {{text}}};
}

std::vector<std::string> textsOf(const std::vector<ReadLine>& lines) {
    std::vector<std::string> texts;
    for (const ReadLine& one : lines) {
        texts.push_back(one.observation.candidates.front());
    }
    return texts;
}

}  // namespace

TEST(ScaleMerge, a_reduced_picture_has_the_mean_of_its_pixels) {
    ColorPlane page(7, 6, white);
    fill(page, {0, 0, 1, 3}, black);
    const base::Image small = reduced(imageOf(page), 3, {});
    EXPECT_EQ(small.width(), 2);
    EXPECT_EQ(small.height(), 2);
    EXPECT_EQ(small.row(0)[0], 170);
    EXPECT_EQ(small.row(0)[4], 255);
    EXPECT_EQ(small.row(1)[0], 255);
}

TEST(ScaleMerge, what_was_read_well_is_painted_over_with_its_ground) {
    constexpr Color ground{20, 60, 120};
    ColorPlane page(60, 30, ground);
    fill(page, {12, 9, 48, 21}, white);
    const ReadLine sure = line("word", {12, 9, 48, 21}, 90);
    const ReadLine unsure = line("word", {12, 9, 48, 21}, 60);
    EXPECT_EQ(reduced(imageOf(page), 3, {sure}).row(5)[10 * 4], ground.blue);
    EXPECT_EQ(reduced(imageOf(page), 3, {unsure}).row(5)[10 * 4], white.blue);
}

TEST(ScaleMerge, a_large_line_takes_its_scraps_place_above_the_text_below_it) {
    std::vector<ReadLine> lines{line("ry", {40, 60, 90, 120}, 60),
                                line("body", {40, 300, 200, 320}, 95)};
    mergeLarger(lines, {line("Quarterly", {10, 10, 200, 60}, 95)}, 3);
    EXPECT_THAT(textsOf(lines), testing::ElementsAre("Quarterly", "body"));
}

TEST(ScaleMerge, small_letters_and_unsure_ones_come_from_the_larger_picture_only) {
    std::vector<ReadLine> lines;
    mergeLarger(lines, {line("small", {10, 10, 60, 20}, 95)}, 3);
    mergeLarger(lines, {line("unsure", {10, 10, 200, 60}, 70)}, 3);
    mergeLarger(lines, {line("7", {10, 10, 40, 60}, 95)}, 3);
    EXPECT_TRUE(lines.empty());
}

TEST(ScaleMerge, a_line_that_was_read_as_well_is_kept) {
    std::vector<ReadLine> lines{line("Headline", {30, 30, 600, 100}, 90)};
    mergeLarger(lines, {line("Headlime", {10, 10, 200, 33}, 85)}, 3);
    EXPECT_THAT(textsOf(lines), testing::ElementsAre("Headline"));
    mergeLarger(lines, {line("Headling", {10, 10, 200, 60}, 95)}, 3);
    EXPECT_THAT(textsOf(lines), testing::ElementsAre("Headling"));
}

}  // namespace platform::tesseract
