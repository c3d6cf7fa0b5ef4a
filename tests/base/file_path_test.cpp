#include "base/file_path.h"

#include <gtest/gtest.h>

using base::appendingPathComponent;
using base::lastPathComponent;

TEST(FilePath, a_component_is_appended_with_one_slash) {
    EXPECT_EQ(appendingPathComponent("/home/a", "b.png"), "/home/a/b.png");
    EXPECT_EQ(appendingPathComponent("/home/a/", "b.png"), "/home/a/b.png");
    EXPECT_EQ(appendingPathComponent("/", "b.png"), "/b.png");
}

TEST(FilePath, the_last_component_ignores_slashes_at_the_end) {
    EXPECT_EQ(lastPathComponent("/Users/someone/Pictures/Shots"), "Shots");
    EXPECT_EQ(lastPathComponent("/Users/someone/Shots//"), "Shots");
    EXPECT_EQ(lastPathComponent("Shots"), "Shots");
    EXPECT_EQ(lastPathComponent("/"), "/");
    EXPECT_EQ(lastPathComponent(""), "");
}
