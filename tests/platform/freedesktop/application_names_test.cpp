#include "platform/freedesktop/application_names.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <chrono>
#include <filesystem>
#include <fstream>

namespace {

namespace fs = std::filesystem;
using platform::freedesktop::ApplicationNames;

class ApplicationNamesTest : public testing::Test {
  protected:
    ApplicationNamesTest() {
        std::string name = (fs::temp_directory_path() / "lumaframe-names-XXXXXX").string();
        EXPECT_NE(::mkdtemp(name.data()), nullptr);
        directory_ = name;
        fs::create_directories(directory_ / "user/applications");
        fs::create_directories(directory_ / "system/applications/kde");
    }
    ~ApplicationNamesTest() override { fs::remove_all(directory_); }

    void write(const std::string& file, const std::string& name, const std::string& more = {}) {
        std::ofstream(directory_ / file)
            << "[Desktop Entry]\nType=Application\nName=" << name << "\n"
            << more << "\n";
    }
    ApplicationNames names(const char* locale = "C") {
        return {{(directory_ / "user").string(), (directory_ / "system").string(),
                 (directory_ / "missing").string()},
                locale};
    }

    fs::path directory_;
};

TEST_F(ApplicationNamesTest, an_application_is_found_by_its_file_in_any_case) {
    write("system/applications/org.example.Draw.desktop", "Drawing");
    EXPECT_EQ(names().nameOf({"org.example.Draw"}), "Drawing");
    EXPECT_EQ(names().nameOf({"ORG.example.draw"}), "Drawing");
}

TEST_F(ApplicationNamesTest, an_application_is_found_by_window_class_last_part_and_program) {
    write("system/applications/org.example.Draw.desktop", "Drawing",
          "StartupWMClass=Draw-Main\nExec=/usr/bin/draw-bin %f");
    EXPECT_EQ(names().nameOf({"draw-main"}), "Drawing");
    EXPECT_EQ(names().nameOf({"Draw"}), "Drawing");
    EXPECT_EQ(names().nameOf({"draw-bin"}), "Drawing");
}

TEST_F(ApplicationNamesTest, a_file_in_a_folder_has_the_folder_in_its_identifier) {
    write("system/applications/kde/viewer.desktop", "Viewer");
    EXPECT_EQ(names().nameOf({"kde-viewer"}), "Viewer");
}

TEST_F(ApplicationNamesTest, the_first_identifier_that_is_known_decides) {
    write("system/applications/first.desktop", "First");
    write("system/applications/second.desktop", "Second");
    EXPECT_EQ(names().nameOf({"unknown", "second", "first"}), "Second");
    EXPECT_EQ(names().nameOf({"unknown", ""}), std::nullopt);
    EXPECT_EQ(names().nameOf({}), std::nullopt);
}

TEST_F(ApplicationNamesTest, the_users_own_file_comes_before_the_systems) {
    write("system/applications/edit.desktop", "System editor");
    write("user/applications/edit.desktop", "My editor");
    EXPECT_EQ(names().nameOf({"edit"}), "My editor");
}

TEST_F(ApplicationNamesTest, a_deleted_application_has_no_name) {
    write("system/applications/edit.desktop", "System editor");
    std::ofstream(directory_ / "user/applications/edit.desktop")
        << "[Desktop Entry]\nHidden=true\n";
    EXPECT_EQ(names().nameOf({"edit"}), std::nullopt);
}

TEST_F(ApplicationNamesTest, a_program_of_two_applications_stands_for_neither) {
    write("system/applications/writer.desktop", "Writer", "Exec=office --writer");
    write("system/applications/table.desktop", "Table", "Exec=office --table");
    EXPECT_EQ(names().nameOf({"office"}), std::nullopt);
    EXPECT_EQ(names().nameOf({"office", "table"}), "Table");
}

TEST_F(ApplicationNamesTest, the_name_is_in_the_language_of_the_locale) {
    write("system/applications/edit.desktop", "Editor", "Name[fr]=Éditeur");
    EXPECT_EQ(names("fr_FR.UTF-8").nameOf({"edit"}), "Éditeur");
}

TEST_F(ApplicationNamesTest, an_application_installed_later_is_found) {
    auto installed = names();
    EXPECT_EQ(installed.nameOf({"late"}), std::nullopt);
    write("user/applications/late.desktop", "Late");
    // Coarse file systems may give the new file the old second.
    fs::last_write_time(directory_ / "user/applications",
                        fs::file_time_type::clock::now() + std::chrono::seconds(5));
    EXPECT_EQ(installed.nameOf({"late"}), "Late");
}

TEST_F(ApplicationNamesTest, files_of_other_kinds_and_broken_ones_are_passed_over) {
    write("system/applications/notes.txt", "Notes");
    fs::create_directory(directory_ / "system/applications/folder.desktop");
    fs::create_symlink("nowhere", directory_ / "system/applications/dangling.desktop");
    write("system/applications/edit.desktop", "Editor");
    EXPECT_EQ(names().nameOf({"notes", "folder", "dangling"}), std::nullopt);
    EXPECT_EQ(names().nameOf({"edit"}), "Editor");
}

}  // namespace
