#include "platform/freedesktop/key_file.h"

#include <gmock/gmock.h>

#include <random>

namespace {

using platform::freedesktop::KeyFile;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(KeyFile, values_are_found_by_group_and_key) {
    const auto file = KeyFile::parse("x=0\n# c\n[A]\nx = 1 \r\ny=a=b\n[B]\nx=2\nx=3\n");
    EXPECT_EQ(file.value("A", "x"), "1");
    EXPECT_EQ(file.value("A", "y"), "a=b");
    EXPECT_EQ(file.value("B", "x"), "2");
    EXPECT_EQ(file.value("B", "y"), std::nullopt);
    EXPECT_EQ(file.value("C", "x"), std::nullopt);
}

TEST(KeyFile, lists_have_no_empty_parts) {
    const auto file = KeyFile::parse("[A]\nlist=,a, b;;c,\nnone=\n");
    EXPECT_THAT(file.list("A", "list"), ElementsAre("a", "b", "c"));
    EXPECT_THAT(file.list("A", "none"), IsEmpty());
}

TEST(KeyFile, no_text_is_too_strange_to_read) {
    std::mt19937 random(7);
    constexpr std::string_view alphabet("[]=#;,\n\r \\a\0\xff", 14);
    for (int round = 0; round < 2000; ++round) {
        std::string text(random() % 40, ' ');
        for (char& character : text) {
            character = alphabet[random() % alphabet.size()];
        }
        const auto file = KeyFile::parse(text);
        EXPECT_LE(file.list("a", "a").size(), text.size());
    }
}

}  // namespace
