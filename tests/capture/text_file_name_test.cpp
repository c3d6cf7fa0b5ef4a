#include "capture/text_file_name.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "base/text.h"
#include "doubles/manual_clock.h"

namespace {

std::string stemOf(const std::string& text) {
    return capture::textFileStem(text, doubles::ManualClock().localTime());
}

TEST(TextFileName, the_letters_and_digits_of_the_first_five_words_name_the_file) {
    EXPECT_EQ(stemOf("Invoice #123: Total due"), "Invoice 123 Total due");
    EXPECT_EQ(stemOf("  one\ttwo\nthree\u00A0four five six"), "one two three four five");
}

TEST(TextFileName, the_cut_to_five_words_comes_before_the_split_at_other_characters) {
    EXPECT_EQ(stemOf("foo-bar a b c d e"), "foo bar a b c d");
}

TEST(TextFileName, punctuation_alone_gives_the_date) {
    EXPECT_EQ(stemOf("--- ***"), "OCR Recognition 2025-03-07 at 14.05.09");
}

TEST(TextFileName, letters_and_marks_of_any_script_survive) {
    EXPECT_EQ(stemOf("Größe: 日本語 हिन्दी"), "Größe 日本語 हिन्दी");
}

TEST(TextFileName, a_long_name_is_cut_to_fifty_characters) {
    EXPECT_EQ(stemOf(std::string(60, 'a')), std::string(50, 'a'));
    EXPECT_EQ(stemOf(std::string(49, 'a') + " b"), std::string(49, 'a') + " ");
}

TEST(TextFileName, a_cut_never_splits_a_character) {
    std::string accented;
    for (int count = 0; count < 60; ++count) {
        accented += "e\u0301";
    }
    EXPECT_EQ(base::characterCount(stemOf(accented)), 50U);
    EXPECT_TRUE(stemOf(accented).ends_with("e\u0301"));
}

/// Never empty, never a way out of the folder or out of sight, never too long, always UTF-8.
void expectUsable(const std::string& stem) {
    ASSERT_FALSE(stem.empty());
    ASSERT_EQ(stem.find('/'), std::string::npos);
    ASSERT_NE(stem.front(), '.');
    ASSERT_NE(stem.front(), ' ');
    ASSERT_LE(base::characterCount(stem), 50U);
    ASSERT_EQ(base::validUtf8(stem), stem);
    for (const char byte : stem) {
        ASSERT_FALSE(static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F);
    }
    // The second set of control characters, and those that turn the direction of reading.
    for (int code = 0x80; code < 0xA0; ++code) {
        ASSERT_EQ(stem.find({'\xC2', static_cast<char>(code)}), std::string::npos);
    }
    for (const char* mark : {"\u200E", "\u200F", "\u202A", "\u202D", "\u202E", "\u2066"}) {
        ASSERT_EQ(stem.find(mark), std::string::npos);
    }
}

TEST(TextFileName, any_bytes_give_a_usable_name) {
    std::mt19937 random(20250307);
    const std::string interesting =
        "a /.\\\x01\n\x7F-_\xC3\xA9\xE2\x80\x8D\xF0\x9F\x91\xA8\xFF\xC0";
    for (int round = 0; round < 5000; ++round) {
        std::string text;
        const std::size_t length = random() % 120;
        for (std::size_t index = 0; index < length; ++index) {
            text += (random() % 2 == 0) ? interesting[random() % interesting.size()]
                                        : static_cast<char>(random() % 256);
        }
        expectUsable(stemOf(text));
    }
}

TEST(TextFileName, any_characters_give_a_usable_name) {
    std::mt19937 random(14);
    // A letter and marks over it, joiners, flags, controls, directions, dots, and separators of
    // other scripts.
    const std::vector<std::string> pieces{
        "a",      "\u0301", "\u200D", "\U0001F468", "\U0001F1E9",   "\u0085", "\u202E",
        ".",      "/",      "\u2044", "\u0627",     "\u0915\u094D", "\uFE0F", "\u3000",
        "\u2028", "\uFEFF", "½",      " ",          "\uFFFE",       "\uE000", "\U000E0041",
        "\u1100", "\u1161", "\u00AD", "..",         "\\",           "\t"};
    for (int round = 0; round < 5000; ++round) {
        std::string text;
        const std::size_t length = random() % 200;
        for (std::size_t index = 0; index < length; ++index) {
            text += pieces[random() % pieces.size()];
        }
        expectUsable(stemOf(text));
    }
}

TEST(TextFileName, a_name_cannot_leave_its_folder_or_hide) {
    EXPECT_EQ(stemOf("../../etc/passwd"), "etc passwd");
    EXPECT_EQ(stemOf(".hidden"), "hidden");
    EXPECT_EQ(stemOf("~/.config -rf"), "config rf");
    EXPECT_EQ(stemOf(std::string("a\0b", 3)), "a b");
    EXPECT_EQ(stemOf(""), "OCR Recognition 2025-03-07 at 14.05.09");
}

}  // namespace
