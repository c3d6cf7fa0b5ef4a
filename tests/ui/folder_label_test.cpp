#include "ui/folder_label.h"

#include <gtest/gtest.h>

namespace {

using ui::folderLabel;

TEST(FolderLabel, an_empty_path_is_the_downloads_folder) {
    EXPECT_EQ(folderLabel(""), "Downloads");
}

TEST(FolderLabel, a_path_is_named_by_its_last_component) {
    EXPECT_EQ(folderLabel("/home/someone/Shots"), "Shots");
    EXPECT_EQ(folderLabel("/Shots"), "Shots");
    EXPECT_EQ(folderLabel("Shots"), "Shots");
    EXPECT_EQ(folderLabel("/home/someone/.hidden"), ".hidden");
    EXPECT_EQ(folderLabel("/home/someone/with.extension"), "with.extension");
    EXPECT_EQ(folderLabel("/home/someone/Bilder & Töne"), "Bilder & Töne");
}

TEST(FolderLabel, slashes_at_the_end_count_for_nothing) {
    EXPECT_EQ(folderLabel("/home/someone/Shots/"), "Shots");
    EXPECT_EQ(folderLabel("/home/someone/Shots///"), "Shots");
}

TEST(FolderLabel, the_root_is_a_slash) {
    EXPECT_EQ(folderLabel("/"), "/");
    EXPECT_EQ(folderLabel("///"), "/");
}

TEST(FolderLabel, a_folder_that_is_not_on_the_disk_has_its_name_all_the_same) {
    EXPECT_EQ(folderLabel("/no/such/folder"), "folder");
}

TEST(FolderLabel, control_characters_are_blanks) {
    EXPECT_EQ(folderLabel("/home/two\nlines\t\x7f"), "two lines  ");
}

}  // namespace
