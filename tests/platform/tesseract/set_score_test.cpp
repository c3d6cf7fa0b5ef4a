#include "set_score.h"

#include <gtest/gtest.h>

namespace bench {

namespace {

Sample sampleOf(const char* category, const char* program) {
    Sample sample;
    sample.category = category;
    sample.program = program;
    return sample;
}

SetScore threePictures() {
    SetScore score;
    score.add(sampleOf("menu", "xterm"), scoreText("abcd", "abcx"));
    score.add(sampleOf("menu", "gtk"), scoreText("efgh", "efgh"));
    score.add(sampleOf("empty", "gtk"), scoreText("", "ab"));
    return score;
}

}  // namespace

TEST(SetScore, counts_by_kind_of_picture) {
    const SetScore score = threePictures();
    EXPECT_EQ(score.whole().characters, 8);
    EXPECT_EQ(score.categories().at("menu").wrongCharacters, 1);
    EXPECT_EQ(score.categories().at("menu").exactLines, 1);
}

TEST(SetScore, counts_what_was_read_on_pictures_without_text) {
    EXPECT_EQ(threePictures().emptyPictures(), 1);
    EXPECT_EQ(threePictures().charactersFromNothing(), 2);
}

TEST(SetScore, without_a_program_all_others_are_left) {
    const auto rests = threePictures().withoutOneProgram();
    EXPECT_EQ(rests.at("xterm").characters, 4);
    EXPECT_EQ(rests.at("xterm").wrongCharacters, 2);
    EXPECT_EQ(rests.at("gtk").wrongCharacters, 1);
}

}  // namespace bench
