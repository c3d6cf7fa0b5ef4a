// The film in the real permissions window: it plays, begins again, rests while nobody sees it, and
// gives its memory back.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iostream>
#include <map>
#include <string_view>

#include "journeys/process_figures.h"
#include "journeys/session.h"

namespace journeys {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// 356 pictures, 30 of them a second.
constexpr double filmSeconds = 356.0 / 30;
constexpr const char* helperName = "lumaframe-video";

/// The number of a picture: the same for the same picture.
std::size_t numberOf(const Picture& picture) {
    return std::hash<std::string_view>()(
        {reinterpret_cast<const char*>(picture.pixels.data()), picture.pixels.size() * 4});
}

class PermissionsFilm : public testing::Test {
  protected:
    explicit PermissionsFilm(int displayScale = 1)
        : scale(displayScale),
          session({.outputs = {{.width = 1280 * displayScale, .height = 800 * displayScale}},
                   .tray = desktop::Tray::host}) {
        session.writeSettings(nlohmann::json::object());
        session.start(SettingsWindow::closed, {{"QT_SCALE_FACTOR", std::to_string(scale)}});
        session.require("The tray icon's registration",
                        [this] { return !session.desktop().trayItems().empty(); });
    }
    void open() {
        const std::string item = session.desktop().trayItems().front();
        session.desktop().bus({"menu-click", item.substr(0, item.find(' ')), "Settings..."});
        session.require("The permissions window", [this] {
            window = session.windowWithRole("permissions").value_or(XCB_WINDOW_NONE);
            return window != XCB_WINDOW_NONE && session.activeWindow() == window;
        });
        area = session.filmArea(scale);
        session.require("A picture of the film", [this] { return isShown(); });
    }
    /// The film's sky is bluer than anything else here, all along its upper edge.
    bool isShown() {
        const Picture shown = film();
        const auto isSky = [&](int x) {
            const std::uint32_t color = shown.at(x, 4);
            return (color & 0xff) > (color >> 16 & 0xff) + 0x18;
        };
        return helper() != 0 && isSky(60) && isSky(120) && isSky(200) && isSky(280) && isSky(340);
    }
    /// What the window shows of the film.
    Picture film() { return session.screen(area); }
    pid_t program() { return session.program().pid(); }
    pid_t helper() { return childOf(program(), helperName); }
    void changeState(std::uint32_t state) {
        const desktop::XClient& client = session.desktop().client();
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = window;
        message.type = client.atom("WM_CHANGE_STATE");
        message.data.data32[0] = state;
        xcb_send_event(client.get(), 0, client.root(),
                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       reinterpret_cast<const char*>(&message));
        client.synchronize();
    }
    void minimise() {
        static constexpr std::uint32_t iconic = 3;
        changeState(iconic);
        session.require("The minimised window", [this] {
            return session.desktop().client().value(window, "WM_STATE") == iconic;
        });
    }
    void restore() {
        xcb_map_window(session.desktop().client().get(), window);
        session.desktop().client().synchronize();
        session.require("The window on the screen again", [this] { return isShown(); });
    }
    /// Waits until the film shows another picture.
    void requireMotion() {
        const Picture before = film();
        session.require("Another picture of the film", [&] { return film() != before; });
    }

    int scale;
    Session session;
    xcb_window_t window = XCB_WINDOW_NONE;
    Area area;
};

TEST_F(PermissionsFilm, every_picture_comes_again_one_length_of_the_film_later) {
    open();
    /// When each picture of the film was first seen.
    std::map<std::size_t, Clock::time_point> seen;
    std::vector<double> rounds;
    std::size_t last = 0;
    desktop::require(
        "The pictures of the second round",
        [&] {
            const Picture picture = film();
            const std::size_t number = numberOf(picture);
            if (number == last) {
                return false;
            }
            last = number;
            const auto [entry, isNew] = seen.emplace(number, Clock::now());
            const std::chrono::duration<double> age = Clock::now() - entry->second;
            // A picture may come twice in one round: a key that is pressed again.
            if (!isNew && age.count() > filmSeconds / 2) {
                rounds.push_back(age.count());
            }
            if (isNew && seen.size() % 20 == 1) {
                desktop::writePng(Session::pictureFile("film-" + std::to_string(seen.size())),
                                  picture);
            }
            return rounds.size() >= 40;
        },
        90s);
    std::ranges::sort(rounds);
    const double median = rounds.at(rounds.size() / 2);
    std::cout << seen.size() << " pictures seen, the next round " << median << " s later ("
              << rounds.front() << " to " << rounds.back() << ")\n";
    EXPECT_GT(seen.size(), 60U);
    // A busy machine shows some pictures late, and may let the film pause; not all the time.
    EXPECT_GT(median, filmSeconds - 0.2);
    EXPECT_LT(rounds.front(), filmSeconds + 0.25);
    EXPECT_EQ(session.program().errorLines(), std::vector<std::string>());
}

TEST_F(PermissionsFilm, while_the_window_is_minimised_nothing_moves_and_nothing_runs) {
    open();
    requireMotion();
    minimise();
    const pid_t itsHelper = helper();
    ASSERT_NE(itsHelper, 0);
    // What was under way ends; then nothing runs. Longer than a hundred pictures would take, and
    // shorter than the 10 s after which the helper is ended.
    Activity programBefore;
    Activity helperBefore;
    session.require("A program at rest", [&] {
        programBefore = activityOf(program());
        helperBefore = activityOf(itsHelper);
        return desktop::staysTrue(
            [&] {
                return activityOf(program()) == programBefore &&
                       activityOf(itsHelper) == helperBefore;
            },
            4000ms);
    });
    restore();
    requireMotion();
}

TEST_F(PermissionsFilm, some_time_after_the_window_is_minimised_the_helper_ends_and_comes_anew) {
    open();
    requireMotion();
    minimise();
    const auto minimised = Clock::now();
    desktop::require(
        "The end of the video helper", [this] { return helper() == 0; }, 40s);
    // The 10 s of the program, which begin with the minimising or a little before this sees it.
    EXPECT_GT(Clock::now() - minimised, 8s);
    // And then nothing is left that would have to run.
    Activity before;
    session.require("A program at rest", [&] {
        before = activityOf(program());
        return desktop::staysTrue([&] { return activityOf(program()) == before; }, 2000ms);
    });
    restore();
    requireMotion();
    EXPECT_EQ(session.program().errorLines(), std::vector<std::string>());
}

class PermissionsFilmMemory : public PermissionsFilm, public testing::WithParamInterface<int> {
  protected:
    PermissionsFilmMemory() : PermissionsFilm(GetParam()) {}
};

TEST_P(PermissionsFilmMemory, is_given_back_when_the_window_closes) {
    const long before = residentMemory(program());
    open();
    for (int motion = 0; motion < 60; ++motion) {
        requireMotion();
    }
    const long during = residentMemory(program());
    const long helperDuring = residentMemory(helper());
    session.closeWindow(window);
    session.require("The end of the video helper", [this] { return helper() == 0; });
    long after = 0;
    desktop::waitUntil([&] {
        after = residentMemory(program());
        return after <= before + 2048;
    });
    std::cout << "resident KiB before, while, after: " << before << ", " << during << ", " << after
              << "; the video helper: " << helperDuring << "\n";
    EXPECT_LE(after, before + 2048);
    EXPECT_GT(helperDuring, 0);
}

INSTANTIATE_TEST_SUITE_P(, PermissionsFilmMemory, testing::Values(1, 2), [](const auto& parameter) {
    return "at_scale_" + std::to_string(parameter.param);
});

}  // namespace
}  // namespace journeys
