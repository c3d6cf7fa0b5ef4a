// Not one pixel of the overlay in a picture, however often, under every window manager and
// compositor. LUMAFRAME_CAPTURES=300 in the environment takes 300 pictures instead of a few.
#include <gtest/gtest.h>

#include <cstdlib>

#include "journeys/desktops_table.h"
#include "journeys/overlay_colors.h"
#include "journeys/session.h"
#include "journeys/set_ups.h"
#include "journeys/window_difference.h"

namespace journeys {
namespace {

namespace key = desktop::key;
using desktop::difference;

int captures() {
    const char* asked = std::getenv("LUMAFRAME_CAPTURES");
    return asked == nullptr ? 15 : std::atoi(asked);
}

class Purity : public testing::TestWithParam<SetUp> {
  protected:
    Purity() {
        session.writeSettings({{"captureShadows", false}, {"saveToDownloads", false}});
        session.start();
        window = std::make_unique<desktop::TestWindow>(
            session.desktop().displayName(),
            desktop::TestWindowOptions{.x = 500, .y = 300, .width = 240, .height = 180});
        window->focus();
        session.waitUntilStill();
    }
    /// The overlay is seen, at `place`, before the selection ends: a picture taken now would be
    /// wrong.
    void waitUntilSeen(Place place, const Picture& undisturbed) {
        session.require("The overlay on the screen", [&] {
            return session.screen({place.x, place.y, 1, 1}).pixels[0] !=
                   undisturbed.at(place.x, place.y);
        });
    }
    void waitUntilHighlighted(Place place, const Picture& undisturbed) {
        session.require("The highlight", [&] {
            return isHighlighted(session.screen({place.x, place.y, 1, 1}).pixels[0],
                                 undisturbed.at(place.x, place.y));
        });
    }
    void waitUntilGone(const Picture& undisturbed) {
        session.waitUntilClosed();
        session.require("The screen as it was", [&] {
            return session.screen({0, 0, 1280, 800}) == undisturbed;
        });
    }

    Session session{
        {.windowManager = GetParam().windowManager, .compositor = GetParam().compositor}};
    std::unique_ptr<desktop::TestWindow> window;
};

INSTANTIATE_TEST_SUITE_P(Desktops, Purity, testing::ValuesIn(everySetUp()), setUpName);

TEST_P(Purity, of_a_region_in_many_captures) {
    const TableRow row(TableGroup::windowManagers,
                       {GetParam().title, "a region captured over and over, every pixel looked at",
                        "no pixel of the overlay"});
    const Picture screen = session.screen({0, 0, 1280, 800});
    for (int capture = 0; capture < captures(); ++capture) {
        const int x = 400 + capture % 200;
        const int y = 250 + capture / 2 % 100;
        session.openOverlay();
        const std::size_t before = session.mark();
        session.input().moveTo({x, y});
        session.input().pressButton();
        session.input().moveInSteps({x, y}, {x + 200, y + 150}, 2);
        waitUntilSeen({x + 100, y - 10}, screen);
        waitUntilSeen({x + 100, y + 75}, screen);
        session.input().releaseButton();
        session.waitForLine(line::regionCopied, before);
        ASSERT_EQ(difference(screen.cut(x, y, 200, 150), session.clipboardPicture().picture),
                  "equal")
            << "in capture " << capture;
        waitUntilGone(screen);
    }
}

TEST_P(Purity, of_a_window_in_many_captures) {
    const TableRow row(TableGroup::windowManagers,
                       {GetParam().title, "a window captured over and over, every pixel looked at",
                        "no pixel of the overlay"});
    const Picture screen = session.screen({0, 0, 1280, 800});
    const Area frame = window->frame();
    const Picture expected = session.screen(frame);
    for (int capture = 0; capture < captures(); ++capture) {
        session.input().moveTo({520 + capture % 100, 330 + capture % 100});
        session.openOverlay();
        const std::size_t before = session.mark();
        session.input().tap(key::space);
        session.program().waitForLine(line::toggled, before);
        session.input().moveTo({521 + capture % 100, 330 + capture % 100});
        waitUntilHighlighted({620, 390}, screen);
        session.input().pressButton();
        session.input().releaseButton();
        session.waitForLine(line::windowCopied, before);
        ASSERT_EQ(windowDifference(expected, session.clipboardPicture().picture), "equal")
            << "in capture " << capture;
        waitUntilGone(screen);
    }
}

}  // namespace
}  // namespace journeys
