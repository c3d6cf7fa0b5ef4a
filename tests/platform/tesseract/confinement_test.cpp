#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <set>
#include <string>
#include <vector>

#include "platform/helper/owned_descriptor.h"
#include "platform/tesseract/helper_fixture.h"

namespace {

using namespace tesseract_tests;

/// The probe is the helper itself with another engine: what is refused to it, the engine is
/// refused.
class Confinement : public HelperFixture {
  protected:
    Confinement() : inheritable_(::open("/dev/null", O_RDONLY)) {
        // As a toolkit may leave them behind.
        const auto oldHandler = ::signal(SIGPIPE, SIG_IGN);
        sigset_t blocked;
        sigset_t oldMask;
        ::sigemptyset(&blocked);
        ::sigaddset(&blocked, SIGUSR1);
        ::sigprocmask(SIG_BLOCK, &blocked, &oldMask);
        lines_ = textsOf(use(LUMAFRAME_CONFINED_PROBE).recognize(blankPicture()));
        ::sigprocmask(SIG_SETMASK, &oldMask, nullptr);
        ::signal(SIGPIPE, oldHandler);
    }
    [[nodiscard]] std::set<std::string> linesThat(const std::string& begin,
                                                  const std::string& end) const {
        std::set<std::string> found;
        for (const std::string& line : lines_) {
            if (line.starts_with(begin) && line.ends_with(end)) {
                found.insert(line);
            }
        }
        return found;
    }
    [[nodiscard]] bool says(const std::string& line) const {
        return std::find(lines_.begin(), lines_.end(), line) != lines_.end();
    }

    /// As a library might leave one open.
    platform::helper::OwnedDescriptor inheritable_;
    std::vector<std::string> lines_;
};

TEST_F(Confinement, a_helper_with_a_picture_can_do_nothing_but_compute) {
    EXPECT_TRUE(says("pixel 255"));
    for (const char* attempt : {"write a file",
                                "open a file for writing",
                                "open a file for reading",
                                "make a directory",
                                "remove a file",
                                "rename a file",
                                "change rights",
                                "make memory with a name",
                                "make an internet socket",
                                "make a local socket",
                                "run a program",
                                "fork",
                                "clone",
                                "leave the namespace",
                                "trace",
                                "signal another",
                                "read the memory of another",
                                "ask a terminal",
                                "make a ring",
                                "map executable memory",
                                "raise a limit",
                                "allocate too much"}) {
        EXPECT_TRUE(says(std::string(attempt) + ": refused")) << attempt;
    }
    EXPECT_EQ(linesThat("", ": done"),
              (std::set<std::string>{"allocate enough: done", "start a thread: done",
                                     "read a file while loading: done"}));
}

TEST_F(Confinement, a_helper_that_loads_its_engine_can_read_files_but_change_none) {
    if (::syscall(SYS_landlock_create_ruleset, nullptr, std::size_t{0}, 1UL) < 1) {
        GTEST_SKIP() << "this kernel has no Landlock; the filter alone confines the helper";
    }
    EXPECT_TRUE(says("write a file while loading: refused"));
    EXPECT_TRUE(says("run a program while loading: refused"));
    EXPECT_TRUE(says("read a file while loading: done"));
}

TEST_F(Confinement, a_helper_leaves_no_core_is_not_traced_and_dies_with_its_parent) {
    EXPECT_EQ(
        linesThat("process ", ""),
        (std::set<std::string>{"process core 0", "process death signal 9", "process dumpable 0"}));
}

TEST_F(Confinement, a_helper_inherits_nothing_but_its_socket) {
    EXPECT_EQ(
        linesThat("descriptor ", ""),
        (std::set<std::string>{"descriptor 0", "descriptor 1", "descriptor 2", "descriptor 3"}));
    EXPECT_EQ(linesThat("variable ", ""),
              (std::set<std::string>{"variable LC_ALL", "variable TESSDATA_PREFIX"}));
    EXPECT_EQ(linesThat("disposition ", ""), std::set<std::string>{});
    EXPECT_EQ(linesThat("directory ", ""), std::set<std::string>{"directory /"});
    EXPECT_EQ(linesThat("language ", ""), std::set<std::string>{"language eng"});
}

}  // namespace
