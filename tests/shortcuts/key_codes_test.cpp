#include "shortcuts/key_codes.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <map>
#include <string>

namespace {

using shortcuts::keyName;

/// Every code with a name, written down a second time in the order of the names.
const std::map<std::int64_t, std::string> names{
    {0, "A"},    {11, "B"},   {8, "C"},     {2, "D"},      {14, "E"},     {3, "F"},
    {5, "G"},    {4, "H"},    {34, "I"},    {38, "J"},     {40, "K"},     {37, "L"},
    {46, "M"},   {45, "N"},   {31, "O"},    {35, "P"},     {12, "Q"},     {15, "R"},
    {1, "S"},    {17, "T"},   {32, "U"},    {9, "V"},      {13, "W"},     {7, "X"},
    {16, "Y"},   {6, "Z"},    {29, "0"},    {18, "1"},     {19, "2"},     {20, "3"},
    {21, "4"},   {23, "5"},   {22, "6"},    {26, "7"},     {28, "8"},     {25, "9"},
    {82, "0"},   {83, "1"},   {84, "2"},    {85, "3"},     {86, "4"},     {87, "5"},
    {88, "6"},   {89, "7"},   {91, "8"},    {92, "9"},     {24, "="},     {81, "="},
    {27, "-"},   {78, "-"},   {33, "["},    {30, "]"},     {39, "'"},     {41, ";"},
    {42, "\\"},  {43, ","},   {47, "."},    {65, "."},     {44, "/"},     {75, "/"},
    {50, "`"},   {67, "*"},   {69, "+"},    {36, "↩"},     {48, "⇥"},     {51, "⌫"},
    {53, "⎋"},   {54, "⌘"},   {55, "⌘"},    {56, "⇧"},     {60, "⇧"},     {58, "⌥"},
    {61, "⌥"},   {59, "⌃"},   {62, "⌃"},    {123, "←"},    {124, "→"},    {125, "↓"},
    {126, "↑"},  {63, "Fn"},  {57, "Caps"}, {76, "Enter"}, {49, "Space"}, {71, "Clear"},
    {122, "F1"}, {120, "F2"}, {99, "F3"},   {118, "F4"},   {96, "F5"},    {97, "F6"},
    {98, "F7"},  {100, "F8"}, {101, "F9"},  {109, "F10"},  {103, "F11"},  {111, "F12"}};

TEST(KeyCodes, every_code_up_to_130_has_its_name_or_its_number) {
    for (std::int64_t code = 0; code <= 130; ++code) {
        const auto name = names.find(code);
        EXPECT_EQ(keyName(code),
                  name != names.end() ? name->second : "Key " + std::to_string(code));
    }
}

TEST(KeyCodes, the_unnamed_codes_below_127_are_these) {
    std::string unnamed;
    for (std::int64_t code = 0; code < 127; ++code) {
        if (keyName(code).starts_with("Key ")) {
            unnamed += std::to_string(code) + " ";
        }
    }
    EXPECT_EQ(unnamed,
              "10 52 64 66 68 70 72 73 74 77 79 80 90 93 94 95 102 104 105 106 107 108 110 112 113 "
              "114 115 116 117 119 121 ");
}

TEST(KeyCodes, the_key_left_of_z_is_told_by_its_number) {
    EXPECT_EQ(keyName(10), "Key 10");
}

TEST(KeyCodes, the_keypad_is_not_told_from_the_main_row) {
    EXPECT_EQ(keyName(83), keyName(18));
}

TEST(KeyCodes, a_code_that_no_keyboard_has_is_told_by_its_number) {
    EXPECT_EQ(keyName(127), "Key 127");
    EXPECT_EQ(keyName(-1), "Key -1");
    EXPECT_EQ(keyName(4294967296), "Key 4294967296");
    EXPECT_EQ(keyName(std::numeric_limits<std::int64_t>::max()), "Key 9223372036854775807");
    EXPECT_EQ(keyName(std::numeric_limits<std::int64_t>::min()), "Key -9223372036854775808");
}

}  // namespace
