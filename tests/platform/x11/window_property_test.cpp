#include "platform/x11/window_property.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using platform::x11::printableText;

TEST(WindowProperty, text_in_utf8_stays_as_it_is) {
    EXPECT_EQ(printableText("Éditeur 編集"), "Éditeur 編集");
    EXPECT_EQ(printableText(""), "");
}

TEST(WindowProperty, text_that_is_not_utf8_is_read_as_latin1) {
    EXPECT_EQ(printableText("Caf\xE9"), "Café");
}

TEST(WindowProperty, no_text_can_begin_a_line_of_its_own) {
    EXPECT_EQ(printableText("a\nb\rc\td\x1B[0m\x7F"), "a b c d [0m ");
    EXPECT_EQ(printableText("a\xC2\x85"
                            "b"),
              "a b");
}

TEST(WindowProperty, a_long_text_is_cut_between_two_characters) {
    std::string text(255, 'a');
    EXPECT_EQ(printableText(text + "é"), text);
    EXPECT_EQ(printableText(text + "bc"), text + "b");
    EXPECT_EQ(printableText(std::string(100000, 'x')).size(), 256U);
}

}  // namespace
