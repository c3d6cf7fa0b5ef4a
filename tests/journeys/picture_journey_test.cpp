// Pictures of what a person sees, kept in the build tree for people to look at.
#include <gtest/gtest.h>

#include <algorithm>

#include "journeys/overlay_colors.h"
#include "journeys/session.h"

namespace journeys {
namespace {

namespace key = desktop::key;

class Pictures : public testing::TestWithParam<desktop::Compositor> {
  protected:
    Pictures() {
        session.writeSettings(nlohmann::json::object());
        session.start(SettingsWindow::leftOpen);
        const auto printed = session.desktop().othersHome() / "printed";
        terminal = session.desktop().startOther(
            "xterm", {"xterm", "-geometry", "80x24+180+140", "-fa", "Monospace", "-fs", "11", "-e",
                      "sh", "-c", "ls -l /usr/bin | head -40; touch \"$HOME/printed\"; read line"});
        session.require("The text in the terminal",
                        [&] { return std::filesystem::exists(printed); });
        session.waitUntilStill();
    }
    void keep(const std::string& name) {
        session.waitUntilStill();
        const std::string kind = GetParam() == desktop::Compositor::none ? "frozen" : "live";
        desktop::writePng(Session::pictureFile(name + "-" + kind),
                          desktop::readScreen(session.desktop().client()));
    }
    /// Waits until the place no longer shows what it showed in `before`.
    void waitForChange(Place place, const Picture& before) {
        session.require("A change on the screen", [&] {
            return session.screen({place.x, place.y, 1, 1}).pixels[0] !=
                   before.at(place.x, place.y);
        });
    }

    Session session{{.compositor = GetParam()}, desktop::Wallpaper::Motif::gradient};
    std::unique_ptr<desktop::Process> terminal;
};

INSTANTIATE_TEST_SUITE_P(Desktops, Pictures,
                         testing::Values(desktop::Compositor::none, desktop::Compositor::picom),
                         [](const auto& parameter) {
                             return parameter.param == desktop::Compositor::none ? "frozen"
                                                                                 : "live";
                         });

TEST_P(Pictures, of_the_overlay_in_the_middle_of_a_drag) {
    const Picture before = session.screen({0, 0, 1280, 800});
    session.openOverlay();
    session.input().moveTo({260, 220});
    session.input().pressButton();
    session.input().moveInSteps({260, 220}, {820, 520});
    waitForChange({20, 780}, before);
    waitForChange({540, 370}, before);
    keep("overlay-mid-drag");
    session.input().tap(key::escape);
    session.input().releaseButton();
    session.waitUntilClosed();
}

TEST_P(Pictures, of_window_mode_over_a_window) {
    const Picture before = session.screen({0, 0, 1280, 800});
    session.openOverlay();
    const std::size_t mark = session.mark();
    session.input().moveTo({400, 300});
    session.input().tap(key::space);
    session.program().waitForLine(line::toggled, mark);
    session.input().moveTo({402, 300});
    waitForChange({20, 780}, before);
    session.require("The highlight", [&] {
        return isHighlighted(session.screen({500, 400, 1, 1}).pixels[0], before.at(500, 400));
    });
    keep("window-mode");
    session.input().tap(key::escape);
    session.waitUntilClosed();
}

TEST_P(Pictures, of_the_settings_window) {
    ASSERT_TRUE(session.windowWithRole("main").has_value());
    auto second = session.startSecond();
    ASSERT_EQ(second->waitForExit(), 0);
    ASSERT_TRUE(desktop::waitUntil(
        [&] { return session.activeWindow() == session.windowWithRole("main"); }));
    keep("settings-window");
}

}  // namespace
}  // namespace journeys
