#include "shortcuts/shortcut_display.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "shortcuts/key_codes.h"

namespace {

using shortcuts::keyName;
using shortcuts::shortcutDisplayString;
using shortcuts::shortcutDisplayWords;

TEST(ShortcutDisplay, the_default_is_command_shift_1) {
    EXPECT_EQ(shortcutDisplayString(18, 768), "⌘⇧1");
}

TEST(ShortcutDisplay, the_modifiers_come_as_command_shift_option_control) {
    EXPECT_EQ(shortcutDisplayString(49, 256 | 512 | 2048 | 4096), "⌘⇧⌥⌃Space");
    EXPECT_EQ(shortcutDisplayString(96, 6144), "⌥⌃F5");
    EXPECT_EQ(shortcutDisplayString(53, 4608), "⇧⌃⎋");
}

TEST(ShortcutDisplay, every_code_with_every_set_of_modifiers_is_symbols_and_name) {
    for (std::int64_t code = 0; code <= 130; ++code) {
        for (int set = 0; set < 16; ++set) {
            const std::string symbols = std::string((set & 1) != 0 ? "⌘" : "") +
                                        ((set & 2) != 0 ? "⇧" : "") + ((set & 4) != 0 ? "⌥" : "") +
                                        ((set & 8) != 0 ? "⌃" : "");
            const std::int64_t modifiers = ((set & 1) != 0 ? 256 : 0) | ((set & 2) != 0 ? 512 : 0) |
                                           ((set & 4) != 0 ? 2048 : 0) |
                                           ((set & 8) != 0 ? 4096 : 0);
            EXPECT_EQ(shortcutDisplayString(code, modifiers), symbols + keyName(code));
        }
    }
}

TEST(ShortcutDisplay, a_key_alone_is_its_name) {
    EXPECT_EQ(shortcutDisplayString(0, 0), "A");
    EXPECT_EQ(shortcutDisplayString(10, 0), "Key 10");
    EXPECT_EQ(shortcutDisplayString(83, 0), "1");
}

TEST(ShortcutDisplay, other_bits_show_nothing) {
    EXPECT_EQ(shortcutDisplayString(18, 1 | 128 | 1024 | 8192 | (1LL << 40)), "1");
    EXPECT_EQ(shortcutDisplayString(18, std::numeric_limits<std::int64_t>::min()), "1");
}

TEST(ShortcutDisplay, numbers_from_a_damaged_store_are_shown_too) {
    EXPECT_EQ(shortcutDisplayString(-5, 768), "⌘⇧Key -5");
    EXPECT_EQ(shortcutDisplayString(std::numeric_limits<std::int64_t>::max(), -1),
              "⌘⇧⌥⌃Key 9223372036854775807");
}

TEST(ShortcutDisplay, words_stand_for_the_symbols) {
    EXPECT_EQ(shortcutDisplayWords(18, 768), "Super+Shift+1");
    EXPECT_EQ(shortcutDisplayWords(49, 6912), "Super+Shift+Alt+Ctrl+Space");
    EXPECT_EQ(shortcutDisplayWords(53, 0), "Escape");
    EXPECT_EQ(shortcutDisplayWords(10, 4096), "Ctrl+Key 10");
    EXPECT_EQ(shortcutDisplayWords(-5, 0), "Key -5");
}

TEST(ShortcutDisplay, words_have_no_symbol_left) {
    for (std::int64_t code = 0; code <= 130; ++code) {
        for (const char letter : shortcutDisplayWords(code, 6912)) {
            EXPECT_TRUE(letter >= ' ' && letter <= '~') << code;
        }
    }
}

}  // namespace
