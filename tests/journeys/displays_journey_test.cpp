// Several displays: a selection belongs to one of them, wherever the pointer goes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "journeys/desktops_table.h"
#include "journeys/session.h"

namespace journeys {
namespace {

namespace key = desktop::key;
using desktop::difference;
using desktop::Output;

const std::vector<Output> rightAndLower{{0, 0, 1280, 1024, 0}, {1280, 200, 800, 600, 1}};
constexpr std::uint32_t black = 0xff000000;

class Displays : public testing::Test {
  protected:
    void SetUp() override {
        if (::geteuid() != 0) {
            GTEST_SKIP() << "A server with several displays needs root.";
        }
    }
    void start(const std::vector<Output>& outputs, const desktop::Environment& environment = {}) {
        session = std::make_unique<Session>(
            desktop::DesktopOptions{.outputs = outputs, .environment = environment});
        session->writeSettings(nlohmann::json::object());
        session->start();
    }

    /// The picture of a drag between two pixels of the screen.
    Picture capture(Place from, Place to) {
        session->openOverlay();
        const std::size_t before = session->mark();
        session->input().drag(from, to);
        const auto file = session->waitForLine(line::saved, before);
        session->waitUntilClosed();
        const auto png = desktop::decodePng(desktop::readFile(file));
        EXPECT_FALSE(png.hasAlpha);
        std::filesystem::remove(file);
        return png.picture;
    }

    /// `width` x `height` pixels of the wallpaper from (x, y) on, black outside of `display`.
    [[nodiscard]] Picture cutOff(int x, int y, int width, int height, const Output& display) const {
        Picture picture{width, height, {}};
        for (int row = y; row < y + height; ++row) {
            for (int column = x; column < x + width; ++column) {
                const bool isInside = display.x <= column && column < display.x + display.width &&
                                      display.y <= row && row < display.y + display.height;
                picture.pixels.push_back(isInside ? session->wallpaper().at(column, row) : black);
            }
        }
        return picture;
    }

    std::unique_ptr<Session> session;
};

TEST_F(Displays, dragging_on_one_leaves_the_other_undimmed_and_window_mode_dims_both) {
    const TableRow row(TableGroup::displays, {.setUp = "Two, one lower",
                                              .tested = "which of them are dimmed while one is "
                                                        "dragged on, and in window mode",
                                              .result = "that one; both"});
    start(rightAndLower);
    const Area onFirst{40, 500, 3, 3};
    const Area onSecond{1320, 700, 3, 3};
    const Picture firstBefore = session->screen(onFirst);
    const Picture secondBefore = session->screen(onSecond);
    session->openOverlay();
    session->input().moveTo({1480, 300});
    session->input().pressButton();
    session->input().moveInSteps({1480, 300}, {1680, 500});
    session->require("The dimming of the second display",
                     [&] { return session->screen(onSecond) != secondBefore; });
    EXPECT_EQ(session->screen(onFirst), firstBefore);
    const std::size_t before = session->mark();
    session->input().tap(key::space);
    session->program().waitForLine(line::toggled, before);
    EXPECT_TRUE(desktop::waitUntil([&] {
        return session->screen(onFirst) != firstBefore && session->screen(onSecond) != secondBefore;
    }));
    session->input().releaseButton();
    session->waitUntilClosed();
}

TEST_F(Displays, a_drag_that_leaves_its_display_is_as_large_as_dragged_and_black_outside) {
    const TableRow row(TableGroup::displays,
                       {.setUp = "Two, one lower, a drag from the primary into the other",
                        .tested = "size and every pixel",
                        .result = "not clamped; the primary's pixels, opaque black outside of it"});
    start(rightAndLower);
    EXPECT_EQ(difference(cutOff(1100, 500, 580, 200, rightAndLower[0]),
                         capture({1100, 500}, {1680, 700})),
              "equal");
}

TEST_F(Displays, a_drag_into_the_primary_is_taken_from_the_primary) {
    const TableRow row(TableGroup::displays,
                       {.setUp = "Two, one lower, a drag from the other into the primary",
                        .tested = "size and every pixel",
                        .result = "not clamped; the primary's pixels, since it is listed first, "
                                  "opaque black outside of it"});
    start(rightAndLower);
    EXPECT_EQ(difference(cutOff(1100, 500, 580, 200, rightAndLower[0]),
                         capture({1680, 700}, {1100, 500})),
              "equal");
}

TEST_F(Displays, a_drag_from_a_display_at_2_into_its_neighbour_keeps_its_scale) {
    const TableRow row(
        TableGroup::scales,
        {.setUp = "2 beside 1, a drag from the first into the second",
         .tested = "size and every pixel",
         .result = "not clamped; the first one's native pixels, opaque black outside"});
    start(rightAndLower, {{"QT_SCREEN_SCALE_FACTORS", "DUMMY0=2;DUMMY1=1"}});
    EXPECT_EQ(difference(cutOff(1100, 500, 580, 200, rightAndLower[0]),
                         capture({1100, 500}, {1680, 700})),
              "equal");
}

TEST_F(Displays, a_drag_into_a_gap_is_black_there) {
    const std::vector<Output> apart{{0, 0, 1024, 768, 0}, {1424, 0, 800, 600, 1}};
    const TableRow row(TableGroup::displays, {.setUp = "A gap between two, a drag across it",
                                              .tested = "size and every pixel",
                                              .result = "not clamped; opaque black in the gap and "
                                                        "beyond"});
    start(apart);
    EXPECT_EQ(difference(cutOff(900, 100, 700, 300, apart[0]), capture({900, 100}, {1600, 400})),
              "equal");
}

}  // namespace
}  // namespace journeys
