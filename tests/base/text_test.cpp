#include "base/text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

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
    EXPECT_EQ(base::withoutOuterBlanks(" \t a  b \r"), "a  b");
    EXPECT_EQ(base::withoutOuterBlanks(" \t\r"), "");
    EXPECT_EQ(base::withoutOuterBlanks(""), "");
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

TEST(Utf8, what_is_no_utf8_becomes_the_replacement_character) {
    EXPECT_EQ(base::validUtf8("a\xFF\xC3z"), "a\uFFFD\uFFFDz");
    EXPECT_EQ(base::validUtf8("größe"), "größe");
}

TEST(Utf8, trimming_takes_separators_and_line_breaks_of_every_kind_from_both_ends) {
    EXPECT_EQ(base::trimmed("\u00A0\u2003\t\r\n a b \u0085\u2028\v"), "a b");
    EXPECT_EQ(base::trimmed(" \n "), "");
    EXPECT_EQ(base::trimmed("\u200Bx"), "\u200Bx");
}

TEST(Utf8, words_are_what_white_space_separates) {
    EXPECT_EQ(base::words("  a\u3000b-c\n\nd "), (std::vector<std::string>{"a", "b-c", "d"}));
    EXPECT_TRUE(base::words(" \t").empty());
}

TEST(Utf8, alphanumeric_pieces_keep_letters_marks_and_numbers) {
    EXPECT_EQ(base::alphanumericPieces("foo-bar_1½e\u0301!Ⅳ"),
              (std::vector<std::string>{"foo", "bar", "1½e\u0301", "Ⅳ"}));
}

TEST(Utf8, characters_are_counted_as_a_reader_sees_them) {
    EXPECT_EQ(base::characterCount(""), 0U);
    EXPECT_EQ(base::characterCount("e\u0301a"), 2U);
    // Two flags, and a family joined by U+200D.
    EXPECT_EQ(base::characterCount("\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7"), 2U);
    EXPECT_EQ(base::characterCount("\U0001F468\u200D\U0001F469\u200D\U0001F467"), 1U);
}

TEST(Utf8, the_first_characters_are_whole_ones) {
    EXPECT_EQ(base::firstCharacters("e\u0301ab", 2), "e\u0301a");
    EXPECT_EQ(base::firstCharacters("ab", 5), "ab");
    EXPECT_EQ(base::firstCharacters("ab", 0), "");
}

TEST(Text, joining_puts_the_separator_between_the_pieces) {
    EXPECT_EQ(base::joined({"a", "", "b"}, "\n"), "a\n\nb");
    EXPECT_EQ(base::joined({}, "\n"), "");
}
