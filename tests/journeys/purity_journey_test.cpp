// Not one pixel of the overlay in a picture, however often, under every kind of session.
#include <gtest/gtest.h>

#include "journeys/overlay_colors.h"
#include "journeys/session.h"

namespace journeys {
namespace {

namespace key = desktop::key;
using desktop::difference;

constexpr int captures = 100;

class Purity : public testing::TestWithParam<desktop::Compositor> {
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
    void waitUntilGone(const Picture& undisturbed) {
        session.waitUntilClosed();
        session.require("The screen as it was", [&] {
            return session.screen({0, 0, 1280, 800}) == undisturbed;
        });
    }

    Session session{{.compositor = GetParam()}};
    std::unique_ptr<desktop::TestWindow> window;
};

INSTANTIATE_TEST_SUITE_P(Desktops, Purity,
                         testing::Values(desktop::Compositor::none, desktop::Compositor::picom,
                                         desktop::Compositor::picomFading),
                         [](const auto& parameter) -> std::string {
                             switch (parameter.param) {
                                 case desktop::Compositor::none:
                                     return "frozen";
                                 case desktop::Compositor::picom:
                                     return "live";
                                 case desktop::Compositor::picomFading:
                                     return "live_with_fading";
                             }
                             return "";
                         });

TEST_P(Purity, of_a_region_in_100_captures) {
    const Picture screen = session.screen({0, 0, 1280, 800});
    for (int capture = 0; capture < captures; ++capture) {
        const int x = 400 + capture;
        const int y = 250 + capture / 2;
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

TEST_P(Purity, of_a_window_in_100_captures) {
    const Picture screen = session.screen({0, 0, 1280, 800});
    const Area frame = window->frame();
    const Picture expected = session.screen(frame);
    for (int capture = 0; capture < captures; ++capture) {
        session.input().moveTo({520 + capture, 330 + capture});
        session.openOverlay();
        const std::size_t before = session.mark();
        session.input().tap(key::space);
        session.program().waitForLine(line::toggled, before);
        session.input().moveTo({521 + capture, 330 + capture});
        session.require("The highlight", [&] {
            return isHighlighted(session.screen({620, 390, 1, 1}).pixels[0], screen.at(620, 390));
        });
        session.input().pressButton();
        session.input().releaseButton();
        session.waitForLine(line::windowCopied, before);
        ASSERT_EQ(difference(expected, session.clipboardPicture().picture), "equal")
            << "in capture " << capture;
        waitUntilGone(screen);
    }
}

}  // namespace
}  // namespace journeys
