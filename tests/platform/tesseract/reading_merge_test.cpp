#include "platform/tesseract/reading_merge.h"

#include <gtest/gtest.h>

namespace platform::tesseract {

TEST(ReadingMerge, each_word_is_that_of_the_surer_reading) {
    const LineReading first{"thc quick fox", 70, {30, 95, 90}, {}};
    const LineReading second{"the qu1ck fox", 75, {80, 40, 85}, {}};
    const LineReading merged = mergedReading(first, second);
    EXPECT_EQ(merged.text, "the quick fox");
    EXPECT_EQ(merged.wordConfidences, (std::vector<int>{80, 95, 90}));
    EXPECT_EQ(merged.alternatives, (std::vector<std::string>{"the qu1ck fox", "thc quick fox"}));
}

TEST(ReadingMerge, words_that_only_one_reading_parts_stay_together) {
    const LineReading first{"8.02d beta", 70, {60, 95}, {}};
    EXPECT_EQ(mergedReading(first, {"8.02 d beta", 80, {90, 85, 70}, {}}).text, "8.02 d beta");
    EXPECT_EQ(mergedReading(first, {"8.02 d beta", 80, {90, 35, 70}, {}}).text, "8.02d beta");
}

TEST(ReadingMerge, of_readings_that_are_as_sure_the_first_counts) {
    EXPECT_EQ(mergedReading({"naïve ½", 50, {50, 50}, {}}, {"naive 2", 50, {50, 50}, {}}).text,
              "naïve ½");
}

TEST(ReadingMerge, a_line_is_no_surer_than_its_surer_reading) {
    const LineReading merged =
        mergedReading({"ab cd", 50, {90, 10}, {}}, {"ax cy", 50, {10, 90}, {}});
    EXPECT_EQ(merged.text, "ab cy");
    EXPECT_EQ(merged.confidence, 50);
}

TEST(ReadingMerge, an_empty_reading_takes_nothing_away) {
    EXPECT_EQ(mergedReading({"word", 40, {40}, {}}, {"", 95, {}, {}}).text, "word");
    EXPECT_EQ(mergedReading({"", 0, {}, {}}, {"word", 40, {40}, {}}).text, "word");
}

}  // namespace platform::tesseract
