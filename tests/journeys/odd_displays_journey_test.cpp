// What no display should be, and yet is: monitors that somebody has defined over others or beyond
// the screen, none at all, and scales that make no sense.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "journeys/desktops_table.h"
#include "journeys/session.h"

namespace journeys {
namespace {

using desktop::difference;

constexpr std::uint32_t black = 0xff000000;

class OddDisplays : public testing::Test {
  protected:
    void SetUp() override {
        if (::geteuid() != 0) {
            GTEST_SKIP() << "A server with several displays needs root.";
        }
        session = std::make_unique<Session>(
            desktop::DesktopOptions{.outputs = {{0, 0, 1280, 800, 0}, {1280, 0, 800, 600, 1}}});
        session->writeSettings({{"copyToClipboard", false}});
        session->start();
    }

    void define(const std::vector<std::string>& arguments) {
        session->desktop().server().configure(arguments);
    }
    void expectOverlays(const std::vector<Area>& areas) {
        const std::size_t before = session->mark();
        session->pressScreenshotShortcut();
        session->program().waitForLine(line::showSelectionCalled, before);
        session->require("The overlay", [&] { return session->overlayAreas() == areas; });
    }
    desktop::Png drag(Place from, Place to) {
        const std::size_t before = session->mark();
        session->input().drag(from, to);
        const auto file = session->waitForLine(line::saved, before);
        session->require("The closing of the overlay",
                         [&] { return session->overlayAreas().empty(); });
        auto png = desktop::decodePng(desktop::readFile(file));
        std::filesystem::remove(file);
        return png;
    }

    std::unique_ptr<Session> session;
};

TEST_F(OddDisplays, two_that_share_one_output_are_two) {
    const TableRow row(TableGroup::displays,
                       {.setUp = "One output divided with xrandr --setmonitor",
                        .tested = "overlay frames, pixels of both halves"});
    define({"--setmonitor", "LEFT", "640/160x800/200+0+0", "DUMMY0"});
    define({"--setmonitor", "RIGHT", "640/160x800/200+640+0", "none"});
    const std::vector<Area> areas{{0, 0, 640, 800}, {640, 0, 640, 800}, {1280, 0, 800, 600}};
    for (const int x : {0, 640}) {
        expectOverlays(areas);
        EXPECT_EQ(difference(session->wallpaper().cut(x, 0, 640, 800),
                             drag({x, 0}, {x + 639, 799}).picture),
                  "equal");
    }
}

TEST_F(OddDisplays, two_that_share_one_output_have_the_scale_of_all) {
    const TableRow row(TableGroup::scales,
                       {.setUp = "2 for everything (QT_SCALE_FACTOR), one output divided with "
                                 "xrandr --setmonitor before the start and while it runs",
                        .tested = "pixels and pixels per metre of both halves"});
    const desktop::Png::Density twice{5669, 5669};
    const std::vector<Area> areas{{0, 0, 640, 800}, {640, 0, 640, 800}, {1280, 0, 800, 600}};
    const auto divide = [&] {
        define({"--setmonitor", "LEFT", "640/160x800/200+0+0", "DUMMY0"});
        define({"--setmonitor", "RIGHT", "640/160x800/200+640+0", "none"});
    };
    const auto check = [&] {
        for (const int x : {0, 640}) {
            expectOverlays(areas);
            const auto png = drag({x, 0}, {x + 639, 799});
            EXPECT_EQ(difference(session->wallpaper().cut(x, 0, 640, 800), png.picture), "equal");
            EXPECT_EQ(png.density, twice);
        }
    };
    session->program().end();
    session->start(SettingsWindow::closed, {{"QT_SCALE_FACTOR", "2"}});
    divide();
    check();
    session->program().end();
    session->start(SettingsWindow::closed, {{"QT_SCALE_FACTOR", "2"}});
    check();
}

TEST_F(OddDisplays, one_that_reaches_beyond_the_screen_is_black_there) {
    const TableRow row(TableGroup::displays,
                       {.setUp = "A monitor that reaches beyond the screen",
                        .tested = "overlay frames, pixels inside and outside of the screen",
                        .result = "a display that ends with the screen; opaque black outside"});
    // The screen ends at 2080 x 800, with nothing of it below the second output.
    define({"--setmonitor", "BEYOND", "1200/300x1000/300+1280+0", "DUMMY1"});
    const std::vector<Area> areas{{0, 0, 1280, 800}, {1280, 0, 800, 800}};
    expectOverlays(areas);
    // The pointer cannot leave the screen; around a centre the selection can.
    session->input().press(desktop::key::leftAlt);
    const std::size_t before = session->mark();
    session->input().drag({2060, 300}, {1960, 400});
    session->input().release(desktop::key::leftAlt);
    const auto picture =
        desktop::decodePng(desktop::readFile(session->waitForLine(line::saved, before))).picture;
    Picture expected{200, 200, {}};
    for (int y = 200; y < 400; ++y) {
        for (int x = 1960; x < 2160; ++x) {
            expected.pixels.push_back(x < 2080 ? session->wallpaper().at(x, y) : black);
        }
    }
    EXPECT_EQ(difference(expected, picture), "equal");
}

TEST_F(OddDisplays, none_at_all_make_the_screen_one_display) {
    const TableRow row(TableGroup::displays,
                       {.setUp = "Every output off", .tested = "overlay frame, pixels"});
    define({"--output", "DUMMY0", "--off", "--output", "DUMMY1", "--off", "--fb", "900x700"});
    expectOverlays({{0, 0, 900, 700}});
    EXPECT_EQ(difference(session->wallpaper().cut(100, 200, 300, 400),
                         drag({100, 200}, {400, 600}).picture),
              "equal");
}

TEST_F(OddDisplays, with_scales_that_make_no_sense_have_whole_overlays_and_pictures) {
    const TableRow row(TableGroup::scales,
                       {.setUp = "Scale factors that are no numbers, 0, negative, below 1 or "
                                 "for displays that are not there",
                        .tested = "overlay frames, pixels"});
    for (const char* factors :
         {"DUMMY0=0;DUMMY1=-3", "nonsense", ";;=;DUMMY0=x", "DUMMY7=2;VGA-1=3",
          "DUMMY0=nan;DUMMY1=inf", "DUMMY0=0.5;DUMMY1=0.75"}) {
        SCOPED_TRACE(factors);
        session->program().end();
        session->start(SettingsWindow::closed, {{"QT_SCREEN_SCALE_FACTORS", factors}});
        const std::vector<Area> areas{{0, 0, 1280, 800}, {1280, 0, 800, 600}};
        expectOverlays(areas);
        EXPECT_EQ(difference(session->wallpaper().cut(100, 200, 300, 400),
                             drag({100, 200}, {400, 600}).picture),
                  "equal");
        expectOverlays(areas);
        EXPECT_EQ(difference(session->wallpaper().cut(1400, 200, 300, 300),
                             drag({1400, 200}, {1700, 500}).picture),
                  "equal");
    }
}

}  // namespace
}  // namespace journeys
