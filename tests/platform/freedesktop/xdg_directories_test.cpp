#include "platform/freedesktop/xdg_directories.h"

#include <gmock/gmock.h>

#include "platform/freedesktop/temporary_directory.h"

namespace {

using freedesktop_tests::ScopedVariable;
using freedesktop_tests::TemporaryDirectory;
using platform::freedesktop::absolutePathsOf;
using platform::freedesktop::downloadsDirectory;
using platform::freedesktop::parseDownloadsDirectory;
using platform::freedesktop::XdgDirectories;
using testing::ElementsAre;

struct UserDirsCase {
    std::string text;
    std::string expected;
};

class UserDirs : public testing::TestWithParam<UserDirsCase> {};

TEST_P(UserDirs, the_downloads_folder_is_read_as_a_shell_reads_it) {
    EXPECT_EQ(parseDownloadsDirectory(GetParam().text, "/home/me"), GetParam().expected)
        << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(
    , UserDirs,
    testing::Values(
        UserDirsCase{"", ""}, UserDirsCase{"XDG_DOWNLOAD_DIR=\"$HOME/D\"", "/home/me/D"},
        UserDirsCase{"  XDG_DOWNLOAD_DIR = \"$HOME/D\"  # mine\r\n", "/home/me/D"},
        UserDirsCase{"XDG_DOWNLOAD_DIR=\"/data/D/\"\n", "/data/D"},
        UserDirsCase{"XDG_DOWNLOAD_DIR=\"$HOME/a \\\"b\\\" \\$c\\\\\"", "/home/me/a \"b\" $c\\"},
        UserDirsCase{"XDG_DOWNLOAD_DIR=\"$HOME/\"", "/home/me"},
        UserDirsCase{"XDG_DOWNLOAD_DIR=\"$HOME\"", "/home/me"},
        UserDirsCase{"XDG_DOWNLOAD_DIR=\"$HOMEX/D\"", ""},
        UserDirsCase{"XDG_DOWNLOAD_DIR=\"D\"", ""}, UserDirsCase{"XDG_DOWNLOAD_DIR=/data/D", ""},
        UserDirsCase{"XDG_DOWNLOAD_DIR=\"/data", ""},
        UserDirsCase{"XDG_DOWNLOAD_DIR=\"/data\" ; rm -r /", ""},
        UserDirsCase{"XDG_DOWNLOAD_DIR=\"/data\\", ""},
        UserDirsCase{"#XDG_DOWNLOAD_DIR=\"/data\"", ""},
        UserDirsCase{"XDG_DOWNLOAD_DIR=\"/a\"\nXDG_DOWNLOAD_DIR=\"/b\"", "/b"},
        UserDirsCase{std::string("\0\xff=\n==\n\"", 7), ""}));

TEST(XdgDirectories, a_user_dirs_file_that_is_a_fifo_blocks_nobody) {
    const TemporaryDirectory directory;
    ASSERT_EQ(::mkfifo(directory.path("user-dirs.dirs").c_str(), 0600), 0);
    EXPECT_EQ(downloadsDirectory({.home = "/home/me",
                                  .configHome = directory.path(),
                                  .dataHome = "",
                                  .dataDirectories = {}}),
              "/home/me/Downloads");
}

TEST(XdgDirectories, relative_paths_are_ignored) {
    EXPECT_THAT(absolutePathsOf("/a:b::/c/:"), ElementsAre("/a", "/c"));
    const TemporaryDirectory home;
    const ScopedVariable homeVariable("HOME", home.path().c_str());
    const ScopedVariable config("XDG_CONFIG_HOME", "relative/config");
    const ScopedVariable data("XDG_DATA_HOME", "");
    const ScopedVariable dataDirectories("XDG_DATA_DIRS", "share:");
    const auto directories = XdgDirectories::fromEnvironment();
    EXPECT_EQ(directories.configHome, home.path(".config"));
    EXPECT_EQ(directories.dataHome, home.path(".local/share"));
    EXPECT_THAT(directories.dataDirectories, ElementsAre("/usr/local/share", "/usr/share"));
}

class UnusableHome : public testing::TestWithParam<const char*> {};

TEST_P(UnusableHome, a_home_that_is_no_directory_is_none) {
    const ScopedVariable home("HOME", GetParam());
    const ScopedVariable config("XDG_CONFIG_HOME", nullptr);
    const auto directories = XdgDirectories::fromEnvironment();
    EXPECT_EQ(directories.home, "");
    EXPECT_EQ(directories.configHome, "");
    EXPECT_EQ(downloadsDirectory(directories), "");
}

INSTANTIATE_TEST_SUITE_P(, UnusableHome,
                         testing::Values(nullptr, "", "home", "/nonexistent", "/dev/null"));

}  // namespace
