#include "text_score.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace bench {

TEST(TextScore, the_edit_distance_counts_code_points) {
    EXPECT_EQ(editDistance("kitten", "sitting"), 3);
    EXPECT_EQ(editDistance("Größe", "Grösse"), 2);
    EXPECT_EQ(editDistance("", "abc"), 3);
    EXPECT_EQ(editDistance("same", "same"), 0);
}

TEST(TextScore, white_space_is_collapsed_and_empty_lines_are_left_out) {
    EXPECT_THAT(normalizedLines("  a \t b\n\n\f c\u00A0d "), testing::ElementsAre("a b", "c d"));
}

TEST(TextScore, composed_and_decomposed_letters_are_the_same) {
    EXPECT_EQ(scoreText("u\u0308ber", "\u00FCber").wrongCharacters, 0);
}

TEST(TextScore, exact_lines_count_whatever_their_order) {
    const TextScore score = scoreText("one\ntwo\nthree\n", "three\none\ntwx");
    EXPECT_EQ(score.lines, 3);
    EXPECT_EQ(score.exactLines, 2);
    EXPECT_GT(score.wrongCharacters, 1);
}

TEST(TextScore, every_character_from_a_picture_without_text_is_wrong) {
    const TextScore score = scoreText("", "ab");
    EXPECT_EQ(score.wrongCharacters, 2);
    EXPECT_EQ(score.characters, 0);
}

}  // namespace bench
