#include "platform/freedesktop/program_starter.h"

#include <gmock/gmock.h>

#include <thread>

#include "doubles/polled_watch.h"
#include "platform/freedesktop/temporary_directory.h"

namespace freedesktop_tests {
namespace {

using platform::freedesktop::ProgramCommand;
using platform::freedesktop::ProgramStarter;

class ProgramStarterTest : public testing::Test {
  protected:
    /// A program that notes its arguments and the variable QT_QPA_PLATFORM, and then ends.
    std::string program(const std::string& name, int status) {
        const std::string path = directory_.write(
            name, "#!/bin/sh\necho " + name + " \"$@\" [$QT_QPA_PLATFORM] >>" +
                      directory_.path("calls") + "\nexit " + std::to_string(status) + "\n");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }
    /// Lets the children end until `text` is what they have noted.
    bool waitForCalls(const std::string& text) {
        return waitUntil([&] { return directory_.read("calls") == text; });
    }
    bool waitUntil(const std::function<bool()>& condition) {
        const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!condition() && std::chrono::steady_clock::now() < limit) {
            watch_.dispatch();
            std::this_thread::yield();
        }
        return condition();
    }
    void start(std::vector<ProgramCommand> commands) {
        starter_.startFirst(std::move(commands), [this] { ++noneCount_; });
    }

    TemporaryDirectory directory_;
    doubles::PolledWatch watch_;
    ProgramStarter starter_{watch_.watch()};
    int noneCount_ = 0;
};

TEST_F(ProgramStarterTest, only_the_first_that_succeeds_is_started) {
    start({{program("one", 0), "a b", "c"}, {program("two", 0)}});
    EXPECT_TRUE(waitForCalls("one a b c []\n"));
    EXPECT_EQ(noneCount_, 0);
}

TEST_F(ProgramStarterTest, a_program_that_is_not_there_is_passed_over) {
    start({{directory_.path("gone")}, {"lumaframe-is-not-such-a-program"}, {program("two", 0)}});
    EXPECT_TRUE(waitForCalls("two []\n"));
}

TEST_F(ProgramStarterTest, one_that_fails_is_followed_by_the_next_and_the_last_by_the_caller) {
    start({{program("one", 3)}, {program("two", 1)}});
    EXPECT_TRUE(waitUntil([this] { return noneCount_ == 1; }));
    EXPECT_EQ(directory_.read("calls"), "one []\ntwo []\n");
}

TEST_F(ProgramStarterTest, without_any_program_the_caller_is_told_at_once) {
    start({{directory_.path("gone")}});
    EXPECT_EQ(noneCount_, 1);
}

TEST_F(ProgramStarterTest, what_this_program_set_for_its_own_toolkit_stays_here) {
    const ScopedVariable platform("QT_QPA_PLATFORM", "xcb");
    start({{program("one", 0)}});
    EXPECT_TRUE(waitForCalls("one []\n"));
}

}  // namespace
}  // namespace freedesktop_tests
