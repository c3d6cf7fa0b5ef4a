#include "platform/freedesktop/exec_line.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using platform::freedesktop::escapedString;
using platform::freedesktop::execLineFor;
using platform::freedesktop::programOfExecLine;

TEST(ExecLine, a_plain_path_stands_as_it_is) {
    EXPECT_EQ(execLineFor("/usr/bin/lumaframe"), "/usr/bin/lumaframe");
    EXPECT_EQ(execLineFor("/opt/größe-1.0_x/луна"), "/opt/größe-1.0_x/луна");
}

TEST(ExecLine, what_a_shell_would_take_for_more_than_a_letter_is_quoted) {
    EXPECT_EQ(execLineFor("/opt/my programs/lumaframe"), "\"/opt/my programs/lumaframe\"");
    for (const char letter : std::string("'><~|&;*?#()")) {
        const std::string path = std::string("/a") + letter + "b";
        EXPECT_EQ(execLineFor(path), '"' + path + '"');
    }
}

TEST(ExecLine, in_quotes_four_letters_are_escaped_and_each_backslash_once_more_as_a_string) {
    EXPECT_EQ(execLineFor("/a\"b"), R"("/a\\"b")");
    EXPECT_EQ(execLineFor("/a`b"), R"("/a\\`b")");
    EXPECT_EQ(execLineFor("/a$b"), R"("/a\\$b")");
    EXPECT_EQ(execLineFor(R"(/a\b)"), R"("/a\\\\b")");
}

TEST(ExecLine, a_percent_sign_is_doubled_and_never_in_the_first_argument) {
    EXPECT_EQ(execLineFor("/100%/fuzz"), "env /100%%/fuzz");
    EXPECT_EQ(execLineFor("/100 %f"), "env \"/100 %%f\"");
    EXPECT_EQ(execLineFor("/a=%"), "/a=%%");
    EXPECT_EQ(programOfExecLine("/a=%%b"), "/a=%b");
}

TEST(ExecLine, no_character_breaks_the_line) {
    EXPECT_EQ(execLineFor("/a\nb"), R"("/a\nb")");
    EXPECT_EQ(execLineFor("/a\tb"), R"("/a\tb")");
    EXPECT_EQ(escapedString(" a\r\n\\ "), R"(\sa\r\n\\\s)");
}

TEST(ExecLine, the_program_of_a_line_is_its_first_argument) {
    EXPECT_EQ(programOfExecLine("lumaframe"), "lumaframe");
    EXPECT_EQ(programOfExecLine("/usr/bin/lumaframe --help %U"), "/usr/bin/lumaframe");
    EXPECT_EQ(programOfExecLine(R"("/my programs/x" "y")"), "/my programs/x");
}

TEST(ExecLine, garbage_has_no_program) {
    for (const char* value : {"", " ", "\"", "\"/a", "\"\"", "\"\\", "\\s"}) {
        EXPECT_EQ(programOfExecLine(value), "") << value;
    }
}

TEST(ExecLine, any_path_comes_back_from_its_line) {
    std::mt19937 random(1);
    const std::string letters = "ab /\\\"'`$;&|<>~*?#()=\n\t\r.-ß";
    for (int round = 0; round < 2000; ++round) {
        std::string path = "/";
        for (auto length = random() % 12; length > 0; --length) {
            path.push_back(letters[random() % letters.size()]);
        }
        const std::string line = execLineFor(path);
        EXPECT_EQ(programOfExecLine(line), path);
        EXPECT_EQ(line.find_first_of("\n\r\t"), std::string::npos);
    }
}

}  // namespace
