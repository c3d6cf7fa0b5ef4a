// Several displays: each is selected on by itself, wherever it stands.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "journeys/desktops_table.h"
#include "journeys/overlay_colors.h"
#include "journeys/session.h"

namespace journeys {
namespace {

namespace key = desktop::key;
using desktop::difference;
using testing::Contains;

class Displays : public testing::TestWithParam<std::vector<desktop::Output>> {
  protected:
    void SetUp() override {
        if (::geteuid() != 0) {
            GTEST_SKIP() << "A server with several displays needs root.";
        }
        session = std::make_unique<Session>(desktop::DesktopOptions{.outputs = GetParam()});
        session->writeSettings(nlohmann::json::object());
        session->start();
    }
    std::unique_ptr<Session> session;
};

using Outputs = std::vector<desktop::Output>;
const Outputs secondRight{{0, 0, 1280, 1024}, {1280, 200, 800, 600}};
const Outputs secondLeft{{800, 0, 1280, 1024}, {0, 300, 800, 600}};
const Outputs secondAbove{{0, 600, 1024, 768}, {100, 0, 800, 600}};

std::string layoutName(const testing::TestParamInfo<Outputs>& parameter) {
    switch (parameter.index) {
        case 0:
            return "second_right_and_lower";
        case 1:
            return "second_left_and_lower";
        default:
            return "second_above";
    }
}

INSTANTIATE_TEST_SUITE_P(Layouts, Displays, testing::Values(secondRight, secondLeft, secondAbove),
                         layoutName);

TEST_P(Displays, a_drag_on_each_gives_that_display_s_pixels) {
    for (const auto& output : GetParam()) {
        const Area area{output.x + 100, output.y + 90, 300, 200};
        const Picture expected = session->screen(area);
        session->openOverlay();
        const std::size_t before = session->mark();
        session->input().drag({area.x, area.y}, {area.x + 300, area.y + 200});
        session->waitForLine(line::regionCopied, before);
        EXPECT_EQ(difference(expected, session->clipboardPicture().picture), "equal");
        EXPECT_THAT(session->linesSince(before),
                    Contains(line::mouseDown + std::string("(100.0, ") +
                             std::to_string(output.height - 90) + ".0)"));
        session->waitUntilClosed();
    }
}

TEST_P(Displays, dragging_on_one_leaves_the_other_undimmed_and_window_mode_dims_both) {
    const auto& first = GetParam()[0];
    const auto& second = GetParam()[1];
    const Area onFirst{first.x + 40, first.y + 500, 3, 3};
    const Area onSecond{second.x + 40, second.y + 500, 3, 3};
    const Picture firstBefore = session->screen(onFirst);
    const Picture secondBefore = session->screen(onSecond);
    session->openOverlay();
    session->input().moveTo({second.x + 200, second.y + 100});
    session->input().pressButton();
    session->input().moveInSteps({second.x + 200, second.y + 100},
                                 {second.x + 400, second.y + 300});
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

TEST_P(Displays, a_window_on_the_second_display_can_be_chosen) {
    const auto& second = GetParam()[1];
    desktop::TestWindow window(
        session->desktop().displayName(),
        {.x = second.x + 150, .y = second.y + 120, .width = 300, .height = 200});
    window.focus();
    session->waitUntilStill();
    const Area frame = window.frame();
    const Picture content = session->screen({window.place().x, window.place().y, 300, 200});
    session->openOverlay();
    std::size_t before = session->mark();
    session->input().moveTo({window.place().x + 10, window.place().y + 10});
    session->input().tap(key::space);
    session->program().waitForLine(line::toggled, before);
    session->require("The highlight", [&] {
        const auto shown = session->screen({window.place().x + 100, window.place().y + 100, 1, 1});
        return isHighlighted(shown.pixels[0], content.at(100, 100));
    });
    before = session->mark();
    session->input().pressButton();
    session->input().releaseButton();
    EXPECT_EQ(session->waitForLine(line::windowCopied, before), std::to_string(window.id()));
    const auto picture = session->clipboardPicture().picture;
    EXPECT_GE(picture.width, frame.width);
    EXPECT_GE(picture.height, frame.height);
}

TEST_P(Displays, a_drag_to_the_corner_of_a_display_takes_its_last_row_and_column) {
    const auto& second = GetParam()[1];
    session->openOverlay();
    const std::size_t before = session->mark();
    const Place from{second.x + second.width - 100, second.y + second.height - 80};
    session->input().drag(from, {second.x + second.width - 1, second.y + second.height - 1});
    session->waitForLine(line::regionCopied, before);
    // The last column and row count as the far edge: exactly the corner of the display.
    EXPECT_EQ(difference(session->wallpaper().cut(from.x, from.y, 100, 80),
                         session->clipboardPicture().picture),
              "equal");
}

TEST(ScaledDisplay, a_point_of_a_display_with_scale_2_is_two_pixels) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "A server with several displays needs root.";
    }
    const TableRow row(TableGroup::scales,
                       {.setUp = "2 beside 1", .tested = "every pixel, pixels per metre"});
    Session session({.outputs = secondRight,
                     .environment = {{"QT_SCREEN_SCALE_FACTORS", "DUMMY0=1;DUMMY1=2"}}});
    session.writeSettings(nlohmann::json::object());
    session.start();
    session.openOverlay();
    const std::size_t before = session.mark();
    session.input().drag({1380, 300}, {1680, 500});
    session.waitForLine(line::saved, before);
    EXPECT_THAT(session.linesSince(before),
                Contains(line::mouseDown + std::string("(50.0, 250.0)")));
    const auto png = session.clipboardPicture();
    EXPECT_EQ(difference(session.wallpaper().cut(1380, 300, 300, 200), png.picture), "equal");
    // 144 pixels per inch.
    EXPECT_EQ(png.density, (desktop::Png::Density{5669, 5669}));
}

TEST_P(Displays, a_display_that_goes_while_the_overlay_is_up_closes_it) {
    session->openOverlay();
    session->desktop().server().configure({"--output", "DUMMY1", "--off"});
    session->waitUntilClosed();
    EXPECT_TRUE(session->program().isRunning());
}

}  // namespace
}  // namespace journeys
