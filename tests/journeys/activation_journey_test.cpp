// A program that does not run yet and is called over the bus: the bus starts it by the service file
// that is installed with it.
#include <gtest/gtest.h>

#include "journeys/session.h"

namespace journeys {
namespace {

class Activation : public testing::Test {
  protected:
    Activation() {
        session.writeSettings(nlohmann::json::object());
        session.leftOnDisk().begin();
    }

    /// As the actions of the desktop file do it.
    void callWith(std::vector<std::string> command) {
        command.insert(command.begin(), "gapplication");
        auto call = session.desktop().start("gapplication", command);
        EXPECT_EQ(call->waitForExit(), 0) << testing::PrintToString(call->errorLines());
    }
    void waitForSettingsWindow() {
        desktop::require("The active settings window", [this] {
            const auto window = session.windowWithRole("main");
            return window && session.activeWindow() == *window;
        });
    }
    void waitForOverlay() {
        desktop::require("The overlay", [this] { return session.overlayWindows() == 1; });
    }
    void cancelOverlay() {
        desktop::require("The end of the overlay", [this] {
            session.input().tap(desktop::key::escape);
            return desktop::waitUntil([this] { return !session.isOpen(); },
                                      std::chrono::milliseconds(500));
        });
    }

    Session session{{.busServices = LUMAFRAME_BUS_SERVICES}};
};

TEST_F(Activation, the_bus_starts_the_program_and_it_shows_its_settings_window) {
    session.desktop().bus({"activate"});
    waitForSettingsWindow();
    // It stays, with its shortcuts.
    desktop::require("The overlay of the shortcut", [this] {
        session.pressScreenshotShortcut();
        return desktop::waitUntil([this] { return session.isOpen(); },
                                  std::chrono::milliseconds(500));
    });
    cancelOverlay();
}

TEST_F(Activation, an_action_starts_the_program_with_its_overlay_and_no_window) {
    for (const std::string action : {"screenshot", "recognize-text"}) {
        callWith({"action", "app.lumaframe.Lumaframe", action});
        waitForOverlay();
        EXPECT_FALSE(session.windowWithRole("main")) << action;
        cancelOverlay();
    }
    EXPECT_FALSE(session.windowWithRole("main"));
}

TEST_F(Activation, after_it_has_been_quit_the_program_is_started_again) {
    for (int time = 0; time < 2; ++time) {
        callWith({"launch", "app.lumaframe.Lumaframe"});
        waitForSettingsWindow();
        session.input().chord({desktop::key::leftControl, desktop::key::q});
        desktop::require("The end of the window",
                         [this] { return !session.windowWithRole("main"); });
    }
}

TEST_F(Activation, a_second_start_finds_the_program_that_the_bus_has_started) {
    callWith({"action", "app.lumaframe.Lumaframe", "screenshot"});
    waitForOverlay();
    cancelOverlay();
    session.startWithoutWaiting();
    EXPECT_EQ(session.program().waitForExit(), 0);
    waitForSettingsWindow();
}

}  // namespace
}  // namespace journeys
