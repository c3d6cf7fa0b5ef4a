#include "platform/freedesktop/xdg_file_manager.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <poll.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdint>
#include <thread>
#include <vector>

#include "platform/freedesktop/temporary_directory.h"

namespace {

using freedesktop_tests::TemporaryDirectory;
using platform::freedesktop::XdgDirectories;
using platform::freedesktop::XdgFileManager;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::vector<std::uint8_t> bytes(const std::string& text) {
    return {text.begin(), text.end()};
}

class XdgFiles : public testing::Test {
  protected:
    XdgFileManager manager() {
        return XdgFileManager({.home = directory_.path(),
                               .configHome = directory_.path("config"),
                               .dataHome = "",
                               .dataDirectories = {}});
    }
    TemporaryDirectory directory_;
};

TEST_F(XdgFiles, a_write_makes_the_file_with_the_bytes_as_they_are) {
    const std::string path = directory_.path("Schöne Bilder 1.png");
    ASSERT_TRUE(manager().write(path, bytes(std::string("\x89PNG\0\n", 6))));
    EXPECT_EQ(TemporaryDirectory::contents(path), std::string("\x89PNG\0\n", 6));
}

TEST_F(XdgFiles, a_shorter_write_replaces_a_longer_file_whole) {
    const std::string path = directory_.write("a.png", "a longer text");
    ASSERT_TRUE(manager().write(path, bytes("new")));
    EXPECT_EQ(TemporaryDirectory::contents(path), "new");
}

TEST_F(XdgFiles, a_missing_folder_is_named_in_the_error) {
    const auto status = manager().write(directory_.path("Shots/a.png"), bytes("x"));
    ASSERT_FALSE(status);
    EXPECT_EQ(status.error().sentence, "The folder “Shots” doesn’t exist.");
    EXPECT_EQ(status.error().kind, base::ErrorKind::notFound);
}

TEST_F(XdgFiles, a_folder_that_is_a_file_is_named_in_the_error) {
    directory_.write("Shots", "");
    const auto status = manager().write(directory_.path("Shots/a.png"), bytes("x"));
    ASSERT_FALSE(status);
    EXPECT_EQ(status.error().sentence, "“Shots” is not a folder.");
}

TEST_F(XdgFiles, a_folder_in_the_place_of_the_file_is_an_error) {
    std::filesystem::create_directory(directory_.path("a.png"));
    const auto status = manager().write(directory_.path("a.png"), bytes("x"));
    ASSERT_FALSE(status);
    EXPECT_THAT(status.error().sentence, HasSubstr("a folder has that name"));
}

TEST_F(XdgFiles, a_full_disk_is_an_error) {
    std::filesystem::create_symlink("/dev/full", directory_.path("a.png"));
    const auto status = manager().write(directory_.path("a.png"), bytes("x"));
    ASSERT_FALSE(status);
    EXPECT_EQ(status.error().sentence,
              "The file “a.png” couldn’t be saved because there is no space left.");
}

TEST_F(XdgFiles, a_file_that_may_not_be_written_is_an_error) {
    // A process that may do everything still may not write to a file of the kernel.
    const auto status = manager().write("/proc/version", bytes("x"));
    ASSERT_FALSE(status);
    EXPECT_FALSE(status.error().sentence.empty());
}

TEST_F(XdgFiles, a_picture_goes_through_a_symbolic_link_and_the_link_stays) {
    const std::string aim = directory_.path("elsewhere.png");
    const std::string link = directory_.path("a.png");
    std::filesystem::create_symlink(aim, link);
    // Also where the link leads nowhere yet.
    for (const char* text : {"first", "2nd"}) {
        ASSERT_TRUE(manager().write(link, bytes(text)));
        EXPECT_EQ(TemporaryDirectory::contents(aim), text);
        EXPECT_EQ(std::filesystem::read_symlink(link), aim);
    }
}

TEST_F(XdgFiles, a_text_takes_the_place_of_a_symbolic_link) {
    const std::string aim = directory_.write("elsewhere.txt", "another's");
    const std::string link = directory_.path("a.txt");
    std::filesystem::create_symlink(aim, link);
    ASSERT_TRUE(manager().writeTextAtomically(link, "text"));
    EXPECT_FALSE(std::filesystem::is_symlink(link));
    EXPECT_EQ(TemporaryDirectory::contents(link), "text");
    EXPECT_EQ(TemporaryDirectory::contents(aim), "another's");
}

TEST_F(XdgFiles, a_symbolic_link_to_itself_is_an_error) {
    std::filesystem::create_symlink("a.png", directory_.path("a.png"));
    const auto status = manager().write(directory_.path("a.png"), bytes("x"));
    ASSERT_FALSE(status);
    EXPECT_THAT(status.error().sentence, HasSubstr("“a.png” couldn’t be saved"));
}

TEST_F(XdgFiles, a_device_takes_the_picture_and_stays_a_device) {
    std::filesystem::create_symlink("/dev/null", directory_.path("a.png"));
    EXPECT_TRUE(manager().write(directory_.path("a.png"), bytes("x")));
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    const auto status = manager().write("/dev/null/a.png", bytes("x"));
    ASSERT_FALSE(status);
    EXPECT_EQ(status.error().sentence, "“null” is not a folder.");
}

TEST_F(XdgFiles, a_fifo_that_nobody_reads_fails_at_once) {
    ASSERT_EQ(::mkfifo(directory_.path("a.png").c_str(), 0600), 0);
    const auto status = manager().write(directory_.path("a.png"), bytes("x"));
    ASSERT_FALSE(status);
    EXPECT_THAT(status.error().sentence, HasSubstr("pipe that nobody reads"));
}

TEST_F(XdgFiles, a_fifo_whose_reader_stalls_fails_within_seconds) {
    const std::string path = directory_.path("a.png");
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    const int reader = ::open(path.c_str(), O_RDONLY | O_NONBLOCK);
    const auto status = manager().write(path, std::vector<std::uint8_t>(1 << 20));
    ::close(reader);
    EXPECT_FALSE(status);
}

TEST_F(XdgFiles, a_fifo_whose_reader_leaves_fails) {
    std::signal(SIGPIPE, SIG_IGN);
    const std::string path = directory_.path("a.png");
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    const int reader = ::open(path.c_str(), O_RDONLY | O_NONBLOCK);
    std::thread leaving([reader] {
        pollfd entry{reader, POLLIN, 0};
        ::poll(&entry, 1, 5000);
        ::close(reader);
    });
    const auto status = manager().write(path, std::vector<std::uint8_t>(1 << 20));
    leaving.join();
    EXPECT_FALSE(status);
}

TEST_F(XdgFiles, a_fifo_with_a_reader_gets_every_byte) {
    const std::string path = directory_.path("a.png");
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    const int reader = ::open(path.c_str(), O_RDONLY | O_NONBLOCK);
    std::size_t received = 0;
    std::thread reading([reader, &received] {
        std::vector<char> buffer(65536);
        pollfd entry{reader, POLLIN, 0};
        while (::poll(&entry, 1, 5000) == 1) {
            const ssize_t count = ::read(reader, buffer.data(), buffer.size());
            if (count == 0) {
                return;
            }
            received += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
        }
    });
    EXPECT_TRUE(manager().write(path, std::vector<std::uint8_t>(1 << 20)));
    reading.join();
    ::close(reader);
    EXPECT_EQ(received, 1U << 20);
}

TEST_F(XdgFiles, a_text_replaces_the_old_one_and_leaves_nothing_beside_it) {
    const std::string path = directory_.write("out/text.txt", "old");
    ASSERT_TRUE(manager().writeTextAtomically(path, "new ✓"));
    EXPECT_EQ(TemporaryDirectory::contents(path), "new ✓");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory_.path("out")), {}), 1);
}

TEST_F(XdgFiles, a_text_that_cannot_be_placed_leaves_nothing_behind) {
    std::filesystem::create_directories(directory_.path("out/text.txt"));
    EXPECT_FALSE(manager().writeTextAtomically(directory_.path("out/text.txt"), "new"));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory_.path("out")), {}), 1);
    const auto status = manager().writeTextAtomically(directory_.path("none/text.txt"), "new");
    ASSERT_FALSE(status);
    EXPECT_EQ(status.error().sentence, "The folder “none” doesn’t exist.");
}

TEST_F(XdgFiles, the_umask_decides_who_may_read_a_new_file) {
    const mode_t before = ::umask(022);
    EXPECT_TRUE(manager().write(directory_.path("a.png"), bytes("x")));
    EXPECT_TRUE(manager().writeTextAtomically(directory_.path("a.txt"), "x"));
    ::umask(before);
    EXPECT_EQ(TemporaryDirectory::modeOf(directory_.path("a.png")), 0644U);
    EXPECT_EQ(TemporaryDirectory::modeOf(directory_.path("a.txt")), 0644U);
}

TEST_F(XdgFiles, downloads_is_the_folder_of_that_name_in_the_home_and_is_not_made) {
    EXPECT_THAT(manager().downloadsDirectories(), ElementsAre(directory_.path("Downloads")));
    EXPECT_FALSE(std::filesystem::exists(directory_.path("Downloads")));
    EXPECT_FALSE(manager().isReadableFolder(directory_.path("Downloads")));
    std::filesystem::create_directory(directory_.path("Downloads"));
    EXPECT_TRUE(manager().isReadableFolder(directory_.path("Downloads")));
}

TEST_F(XdgFiles, downloads_is_what_the_user_chose) {
    directory_.write("config/user-dirs.dirs", "XDG_DOWNLOAD_DIR=\"$HOME/Stažené\"\n");
    EXPECT_THAT(manager().downloadsDirectories(), ElementsAre(directory_.path("Stažené")));
}

TEST_F(XdgFiles, without_a_home_there_are_no_downloads) {
    EXPECT_THAT(XdgFileManager(XdgDirectories()).downloadsDirectories(), IsEmpty());
}

}  // namespace
