#include "latency/busy_desktop.h"

#include <gmock/gmock.h>

#include <csignal>
#include <stdexcept>

namespace {

using latency::BusyDesktop;
using testing::AllOf;
using testing::HasSubstr;
using testing::ThrowsMessage;

class BusyDesktopTest : public testing::Test {
  protected:
    /// What shows something, as the benchmark's desktop has it.
    desktop::Process& openWindow(const std::string& name) {
        auto program = busy.get().start(name, {"xterm", "-e", "sleep", "1000"});
        auto& opened = *program;
        busy.keep(std::move(program));
        return opened;
    }
    [[nodiscard]] std::size_t windows() {
        return busy.get()
                   .client()
                   .property(busy.get().client().root(), "_NET_CLIENT_LIST")
                   .value_or(std::vector<std::uint8_t>{})
                   .size() /
               4;
    }

    BusyDesktop busy{{}, {}};
};

TEST_F(BusyDesktopTest, is_whole_while_every_program_shows_its_window) {
    EXPECT_NO_THROW(busy.requireWhole("nothing"));
    openWindow("first");
    openWindow("second");
    desktop::require("two windows", [this] { return windows() == 2; });
    EXPECT_NO_THROW(busy.requireWhole("nothing"));
}

TEST_F(BusyDesktopTest, without_one_of_its_windows_is_refused_and_said_after_what) {
    openWindow("first");
    auto& second = openWindow("second");
    openWindow("third");
    desktop::require("three windows", [this] { return windows() == 3; });
    second.signal(SIGTERM);
    ASSERT_TRUE(second.waitForExit().has_value());
    EXPECT_THAT([this] { busy.requireWhole("a round of ksnip"); },
                ThrowsMessage<std::runtime_error>(
                    AllOf(HasSubstr("is gone"), HasSubstr("after a round of ksnip"))));
}

TEST_F(BusyDesktopTest, a_program_that_has_just_ended_by_itself_is_missed_too) {
    auto brief = busy.get().start("short", {"true"});
    auto& ended = *brief;
    busy.keep(std::move(brief));
    desktop::require("the end of the program", [&] { return !ended.isRunning(); });
    EXPECT_THROW(busy.requireWhole("a command of scrot"), std::runtime_error);
}

}  // namespace
