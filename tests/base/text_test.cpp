#include "base/text.h"

#include <gtest/gtest.h>

TEST(DecimalText, a_whole_number_keeps_a_fractional_digit) {
    EXPECT_EQ(base::decimalText(100), "100.0");
    EXPECT_EQ(base::decimalText(-3), "-3.0");
    EXPECT_EQ(base::decimalText(0), "0.0");
}

TEST(DecimalText, a_fraction_is_written_in_its_shortest_exact_form) {
    EXPECT_EQ(base::decimalText(0.25), "0.25");
    EXPECT_EQ(base::decimalText(80.2), "80.2");
    EXPECT_EQ(base::decimalText(1066.6666666666667), "1066.6666666666667");
}

TEST(DecimalText, an_exponent_needs_no_further_digit) {
    EXPECT_EQ(base::decimalText(1e20), "1e+20");
}

TEST(Trimmed, only_the_ends_lose_their_blanks) {
    EXPECT_EQ(base::trimmed(" \t a  b \r"), "a  b");
    EXPECT_EQ(base::trimmed(" \t\r"), "");
    EXPECT_EQ(base::trimmed(""), "");
}

TEST(Latin1Text, letters_of_latin_1_become_one_byte_each) {
    EXPECT_EQ(base::latin1Text("Größe"),
              "Gr\xF6\xDF"
              "e");
    EXPECT_EQ(base::latin1Text(""), "");
}

TEST(Latin1Text, what_latin_1_cannot_hold_becomes_a_question_mark) {
    EXPECT_EQ(base::latin1Text("5 € 日本"), "5 ? ??");
    EXPECT_EQ(base::latin1Text("a\xC3"), "a?");
    EXPECT_EQ(base::latin1Text("\xFF\xFE"
                               "b"),
              "??b");
}
