#include "desktop/disk_watch.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "desktop/desktop.h"
#include "desktop/private_places.h"

namespace desktop {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class DiskWatchTest : public testing::Test {
  protected:
    DiskWatchTest() {
        fs::create_directories(root / "old");
        write(root / "old/file");
    }
    ~DiskWatchTest() override { fs::remove_all(directory); }
    static void write(const fs::path& file) { std::ofstream(file) << "text"; }

    static fs::path makeDirectory() {
        std::string name = (fs::temp_directory_path() / "lumaframe-watch-XXXXXX").string();
        return ::mkdtemp(name.data());
    }

    fs::path directory = makeDirectory();
    fs::path root = directory / "root";
};

TEST_F(DiskWatchTest, tells_what_is_made_and_not_what_was_there) {
    DiskWatch watch({root, directory / "missing"});
    EXPECT_THAT(watch.touched(), IsEmpty());
    write(root / "new");
    EXPECT_THAT(watch.touched(), ElementsAre(root / "new"));
}

TEST_F(DiskWatchTest, tells_what_was_there_for_a_moment_only) {
    DiskWatch watch({root});
    write(root / "old/secret");
    fs::remove(root / "old/secret");
    EXPECT_THAT(watch.touched(), ElementsAre(root / "old/secret"));
}

TEST_F(DiskWatchTest, tells_what_was_moved_here_and_what_was_written_to) {
    write(directory / "elsewhere");
    DiskWatch watch({root});
    fs::rename(directory / "elsewhere", root / "here");
    std::ofstream(root / "old/file", std::ios::app) << "more";
    EXPECT_THAT(watch.touched(), ElementsAre(root / "here", root / "old/file"));
}

TEST_F(DiskWatchTest, tells_of_folders_links_sockets_and_pipes_too) {
    DiskWatch watch({root});
    fs::create_directory(root / "folder");
    fs::create_symlink("nowhere", root / "link");
    ASSERT_EQ(::mkfifo((root / "pipe").c_str(), 0600), 0);
    EXPECT_THAT(watch.touched(), ElementsAre(root / "folder", root / "link", root / "pipe"));
}

TEST_F(DiskWatchTest, looks_into_folders_that_are_new) {
    DiskWatch watch({root});
    fs::create_directories(root / "a/b/c");
    write(root / "a/b/c/at once");
    EXPECT_THAT(watch.touched(), Contains(root / "a/b/c/at once"));
    write(root / "a/b/c/later");
    fs::remove(root / "a/b/c/later");
    EXPECT_THAT(watch.touched(), Contains(root / "a/b/c/later"));
}

TEST_F(DiskWatchTest, does_not_tell_of_files_without_a_name) {
    DiskWatch watch({root});
    const int file = ::open(root.c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, 0600);
    ASSERT_GE(file, 0);
    ASSERT_EQ(::write(file, "text", 4), 4);
    ::close(file);
    EXPECT_THAT(watch.touched(), IsEmpty());
}

TEST(PrivatePlaces, are_what_a_program_sees_as_the_places_for_temporary_files) {
    Desktop desktop({.windowManager = WindowManager::none});
    const PrivatePlaces places(desktop.directory());
    if (!places.hasTemporaryDirectory()) {
        GTEST_SKIP() << "Needs the right to mount, and a build outside of /tmp.";
    }
    DiskWatch watch(places.directories());
    // It still finds its home and its X server.
    auto program = desktop.start(
        "program",
        {"sh", "-c",
         "set -e; touch /tmp/a /var/tmp/b /dev/shm/c d \"$HOME/e\"; rm /tmp/a; xprop -root"},
        {}, places.entrance());
    EXPECT_EQ(program->waitForExit(), 0) << testing::PrintToString(program->errorLines());
    EXPECT_THAT(watch.touched(),
                ElementsAre(desktop.directory() / "shm/c", desktop.directory() / "tmp/a",
                            desktop.directory() / "var-tmp/b", desktop.directory() / "working/d"));
    EXPECT_TRUE(fs::exists(desktop.home() / "e"));
    for (const char* file : {"/tmp/a", "/var/tmp/b", "/dev/shm/c"}) {
        EXPECT_FALSE(fs::exists(file)) << file;
    }
}

}  // namespace
}  // namespace desktop
