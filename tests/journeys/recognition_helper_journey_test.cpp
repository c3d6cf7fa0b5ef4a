// The recognition helper in the life of the program: when it starts, and how it ends.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "journeys/process_figures.h"
#include "journeys/session.h"

namespace journeys {
namespace {

constexpr const char* textCopied = "OCR complete! Text copied to clipboard.";

class RecognitionHelper : public testing::Test {
  protected:
    explicit RecognitionHelper(const desktop::Environment& environment = {}) {
        session.writeSettings(silent);
        session.start(SettingsWindow::closed, environment);
    }
    /// What plays a sound would be a child, too.
    inline static const nlohmann::json silent{{"playSounds", false}};

    std::vector<ChildProcess> children() { return childrenOf(session.program().pid()); }
    /// Presses the shortcut, drags over a part of the screen and waits for the text.
    void recognize() {
        const std::size_t before = session.mark();
        session.openRecognitionOverlay();
        session.input().drag({100, 100}, {300, 200});
        session.waitForLine(textCopied, before);
        session.waitUntilClosed();
    }

    Session session;
};

TEST_F(RecognitionHelper, is_not_there_before_text_is_wanted) {
    session.openOverlay();
    session.cancelOverlay();
    EXPECT_TRUE(children().empty());
}

TEST_F(RecognitionHelper, starts_while_the_overlay_is_open_and_reads_more_than_once) {
    session.openRecognitionOverlay();
    session.require("the start of the helper", [&] { return children().size() == 1; });
    const pid_t helper = children().front().pid;
    // As long as the kernel lets a name be.
    EXPECT_EQ(children().front().name, "lumaframe-text-");
    session.cancelOverlay();
    recognize();
    recognize();
    ASSERT_EQ(children().size(), 1U);
    EXPECT_EQ(children().front().pid, helper);
}

TEST_F(RecognitionHelper, that_is_killed_leaves_nothing_behind_and_is_replaced) {
    recognize();
    ASSERT_EQ(children().size(), 1U);
    const pid_t killed = children().front().pid;
    ::kill(killed, SIGKILL);
    session.require("the end of the helper", [&] { return children().empty(); });
    recognize();
    ASSERT_EQ(children().size(), 1U);
    EXPECT_NE(children().front().pid, killed);
}

TEST_F(RecognitionHelper, does_not_outlive_the_program) {
    recognize();
    ASSERT_EQ(children().size(), 1U);
    const pid_t helper = children().front().pid;
    session.program().signal(SIGKILL);
    session.program().waitForExit();
    EXPECT_TRUE(desktop::waitUntil([&] { return ::kill(helper, 0) != 0; }));
}

#ifdef LUMAFRAME_TEST_LATER_CLOCK

/// The program with a clock that goes forward when the test says so.
class RecognitionHelperLater : public RecognitionHelper {
  protected:
    RecognitionHelperLater()
        : RecognitionHelper({{"LD_PRELOAD", LUMAFRAME_TEST_LATER_CLOCK},
                             {"LUMAFRAME_TEST_LATER", secondsFile().string()}}) {}
    ~RecognitionHelperLater() override { std::filesystem::remove(secondsFile()); }

    static std::filesystem::path secondsFile() {
        return std::filesystem::current_path() / ("lumaframe-later-" + std::to_string(::getpid()));
    }
    /// All of the time since the start. The program looks at its clock, having slept, when
    /// something happens: here, when its settings change.
    void setLater(int seconds) {
        std::ofstream(secondsFile()) << std::string(static_cast<std::size_t>(seconds), '.');
        nlohmann::json settings = silent;
        settings["showNotifications"] = seconds % 2 == 0;
        session.writeSettings(settings);
    }
};

TEST_F(RecognitionHelperLater, has_ended_after_a_minute_and_left_no_memory_behind) {
    // A delivery is the same for a picture and for its text.
    const std::size_t begin = session.mark();
    session.openOverlay();
    session.input().drag({100, 100}, {300, 200});
    session.waitForLine(line::regionCopied, begin);
    session.waitUntilClosed();
    const long before = residentMemory(session.program().pid());
    recognize();
    recognize();
    ASSERT_EQ(children().size(), 1U);
    setLater(50);
    EXPECT_TRUE(
        desktop::staysTrue([&] { return children().size() == 1; }, std::chrono::milliseconds(500)));
    setLater(61);
    session.require("the end of the helper", [&] { return children().empty(); });
    constexpr long mebibyte = 1024;
    long after = 0;
    EXPECT_TRUE(desktop::waitUntil([&] {
        after = residentMemory(session.program().pid());
        return after <= before + mebibyte;
    })) << after;
    std::cout << "resident KiB before and after: " << before << ", " << after << "\n";
    // And the next recognition has a helper of its own.
    recognize();
    EXPECT_EQ(children().size(), 1U);
}

#endif

}  // namespace
}  // namespace journeys
