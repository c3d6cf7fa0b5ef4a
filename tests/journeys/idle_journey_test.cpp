// What the program costs while it waits: nothing that runs, and little memory.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

#include "journeys/process_figures.h"
#include "journeys/recognition_journey.h"
#include "journeys/sound_server.h"

namespace journeys {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::IsEmpty;

constexpr long mebibyte = 1024;
constexpr desktop::Output large{.width = 3840, .height = 2160};

/// Parts of the names of the libraries that belong to helper programs.
constexpr std::array heavyLibraries{"tesseract", "lept",     "avformat", "avcodec",
                                    "swscale",   "canberra", "pulse",    "sndfile"};

/// Those of the libraries above that a process has in its memory.
std::vector<std::string> librariesOf(pid_t process) {
    std::ifstream maps("/proc/" + std::to_string(process) + "/maps");
    const std::string text{std::istreambuf_iterator<char>(maps), {}};
    std::vector<std::string> loaded;
    std::copy_if(
        heavyLibraries.begin(), heavyLibraries.end(), std::back_inserter(loaded),
        [&](const std::string& name) { return text.find("/lib" + name) != std::string::npos; });
    return loaded;
}

class Idle : public RecognitionJourney {
  protected:
    Idle()
        : RecognitionJourney(
              {.outputs = {large}, .notifications = desktop::NotificationDaemon::recorder},
              desktop::Wallpaper::Motif::pattern) {}

    [[nodiscard]] pid_t program() { return session.program().pid(); }
    [[nodiscard]] std::ptrdiff_t threads() {
        return std::distance(fs::directory_iterator("/proc/" + std::to_string(program()) + "/task"),
                             fs::directory_iterator());
    }
    std::vector<std::string> loadedLibraries() { return librariesOf(program()); }
    /// Waits until no thread of the program has run for five seconds.
    void expectRest() {
        Activity before;
        EXPECT_TRUE(desktop::waitUntil(
            [&] {
                before = activityOf(program());
                return desktop::staysTrue([&] { return activityOf(program()) == before; },
                                          std::chrono::seconds(5));
            },
            std::chrono::seconds(40)));
    }
    void takePicture(const Area& area) {
        session.openOverlay();
        const std::size_t before = session.mark();
        session.input().drag({area.x, area.y}, {area.x + area.width, area.y + area.height});
        session.waitForLine(line::saved, before);
        session.waitUntilClosed();
    }
};

TEST_F(Idle, nothing_runs_before_and_after_captures_and_no_thread_is_left) {
    start();
    expectRest();
    const auto before = threads();
    for (int capture = 0; capture < 5; ++capture) {
        takePicture({200, 300, 1280, 800});
    }
    takePicture({0, 0, large.width, large.height});
    expectRest();
    EXPECT_LE(threads(), before);
    std::cout << "threads before and after: " << before << ", " << threads() << "\n";
}

TEST_F(Idle, what_recognises_decodes_and_plays_is_not_in_the_program) {
    const fs::path socket = session.desktop().directory() / "sound";
    SoundServer sounds(socket);
    start({{"playSounds", true}}, {{"PULSE_SERVER", "unix:" + socket.string()}});
    EXPECT_THAT(loadedLibraries(), IsEmpty());
    const TextWindow terminal = openTerminal("Boats leave the harbour at seven", {60, 60});
    takePicture(terminal.area);
    session.require("the sound of a picture", [&] { return sounds.visits() == 1; });
    expectRead("Boats leave the harbour at seven", recognize(terminal.area));
    session.require("the sound of a text", [&] { return sounds.visits() == 2; });
    expectRest();
    EXPECT_THAT(loadedLibraries(), IsEmpty());
    // They would be seen.
    const pid_t helper = childOf(program(), "lumaframe-text");
    ASSERT_NE(helper, 0);
    EXPECT_THAT(librariesOf(helper), Contains("tesseract"));
}

TEST_F(Idle, captures_of_a_large_display_keep_little_more_than_the_picture_that_is_offered) {
    start();
    expectRest();
    const long fresh = residentMemory(program());
    for (int capture = 0; capture < 20; ++capture) {
        takePicture({0, 0, large.width - 1, large.height - 1});
    }
    expectRest();
    const long after = residentMemory(program());
    const auto offered = static_cast<long>(fs::file_size(session.downloads().back()) / 1024);
    std::cout << "resident KiB before and after: " << fresh << ", " << after
              << ", of these offered " << offered << "\n";
    // The budgets are 32 MiB and 4 more, with the compiler's options of a release.
    EXPECT_LE(fresh, 34 * mebibyte);
    EXPECT_LE(after - offered, fresh + 5 * mebibyte);
}

}  // namespace
}  // namespace journeys
