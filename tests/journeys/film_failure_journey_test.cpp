// A film that is not there, or none: the permissions window does without.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <ostream>

#include "journeys/permissions_panel.h"
#include "journeys/process_figures.h"
#include "journeys/session.h"
#include "video/film_maker.h"

namespace journeys {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAreArray;

enum class Decoder { asked, spared };

struct Failure {
    const char* name;
    /// Puts it in the place of the film.
    std::function<void(const fs::path& film)> make;
    Decoder decoder;
    /// What the log says of it, with the film's path in the place of "%"; empty for nothing.
    std::string line;
    friend void PrintTo(const Failure& failure, std::ostream* stream) { *stream << failure.name; }
};

/// The program as installed by a package, with something else in the place of its film.
class FilmFailure : public testing::TestWithParam<Failure> {
  protected:
    FilmFailure() {
        for (const char* name : {"bin", "libexec/lumaframe", "share/lumaframe"}) {
            fs::create_directories(prefix / name);
        }
        fs::copy_file(LUMAFRAME_PROGRAM, prefix / "bin/lumaframe");
        fs::create_symlink(LUMAFRAME_SOURCE_DIRECTORY "/resources/icons", prefix / "share/icons");
        installHelper();
        GetParam().make(film);
        session.useProgram(prefix / "bin/lumaframe");
        // So that the window opens at the start.
        fs::remove(session.desktop().home() / "Downloads");
        session.writeSettings(nlohmann::json::object());
    }
    /// The helper, which leaves a note when it is started.
    void installHelper() {
        const fs::path real = prefix / "libexec/lumaframe/decoder";
        const fs::path script = prefix / "libexec/lumaframe/lumaframe-video-helper";
        fs::copy_file(LUMAFRAME_VIDEO_HELPER, real);
        std::ofstream(script) << "#!/bin/sh\n: >" << note.string() << "\nexec " << real.string()
                              << "\n";
        fs::permissions(script, fs::perms::owner_all);
    }
    [[nodiscard]] bool isDecoderAsked() const { return fs::exists(note); }
    bool isDecoderRunning() {
        const pid_t program = session.program().pid();
        return childOf(program, "decoder") != 0 || childOf(program, "lumaframe-video") != 0;
    }
    std::vector<std::string> linesOfTheFilm() {
        auto lines = session.linesSince(0);
        std::erase_if(lines, [](const std::string& line) {
            return !line.starts_with("Failed to load video: ");
        });
        return lines;
    }
    [[nodiscard]] std::vector<std::string> expectedLines() const {
        std::string line = GetParam().line;
        if (line.empty()) {
            return {};
        }
        if (const auto place = line.find('%'); place != std::string::npos) {
            line.replace(place, 1, film.string());
        }
        return {"Failed to load video: " + line};
    }

    Session session{{.accessibility = desktop::Accessibility::on}};
    PermissionsPanel panel{session};
    const fs::path prefix = session.desktop().directory() / "prefix";
    const fs::path film = prefix / "share/lumaframe/animation.mp4";
    const fs::path note = session.desktop().directory() / "decoder-started";
};

TEST_P(FilmFailure, leaves_the_frame_blank_and_the_rest_of_the_window_usable) {
    session.startWithoutWaiting();
    panel.waitUntilOpen();
    if (GetParam().decoder == Decoder::asked) {
        session.require("The start of the video helper", [this] { return isDecoderAsked(); });
    }
    session.require("The end of the video helper", [this] { return !isDecoderRunning(); });
    session.require("The lines of the log",
                    [this] { return linesOfTheFilm().size() >= expectedLines().size(); });

    const Picture frame = session.screen(session.filmArea());
    EXPECT_TRUE(std::ranges::all_of(
        frame.pixels, [&](std::uint32_t pixel) { return pixel == frame.pixels.front(); }));
    desktop::writePng(Session::pictureFile(std::string("film-failure-") + GetParam().name),
                      desktop::readScreen(session.desktop().client()));

    session.leftOnDisk().expect(session.desktop().home() / "Downloads");
    fs::create_directory(session.desktop().home() / "Downloads");
    session.input().click(panel.action().center());
    panel.waitForStatus("Files and Folders", "Granted");
    panel.waitForAction("Get Started");
    session.input().click(panel.action().center());
    session.require("The closing of the permissions window",
                    [this] { return !session.windowWithRole("permissions"); });
    // Once and for all: neither drawing nor the return of the window has tried again.
    EXPECT_THAT(linesOfTheFilm(), ElementsAreArray(expectedLines()));
    EXPECT_EQ(isDecoderAsked(), GetParam().decoder == Decoder::asked);
    EXPECT_EQ(session.program().errorLines(), std::vector<std::string>());
    EXPECT_TRUE(session.program().isRunning());
}

INSTANTIATE_TEST_SUITE_P(
    , FilmFailure,
    testing::Values(
        Failure{"missing", [](const fs::path&) {}, Decoder::spared, ""},
        Failure{"sound_only", video_tests::makeSoundOnly, Decoder::asked, ""},
        Failure{"corrupt", [](const fs::path& film) { std::ofstream(film) << "No film at all.\n"; },
                Decoder::asked, "Invalid data found when processing input."},
        Failure{"directory", [](const fs::path& film) { fs::create_directory(film); },
                Decoder::spared, "% is not a file."},
        Failure{"unreadable", [](const fs::path& film) { fs::create_symlink(film, film); },
                Decoder::spared, "% cannot be read: Too many levels of symbolic links."}),
    [](const testing::TestParamInfo<Failure>& failure) { return failure.param.name; });

}  // namespace
}  // namespace journeys
