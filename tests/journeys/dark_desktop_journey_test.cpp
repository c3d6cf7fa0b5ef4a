// The settings window on a desktop that announces its colours through the settings portal.
#include <gtest/gtest.h>

#include "journeys/settings_fixture.h"

namespace journeys {
namespace {

class DarkDesktop : public SettingsFixture {
  protected:
    /// How bright the window's ground is, 0 to 255: its corner, where no control is.
    int brightness() {
        const auto place = windowArea();
        return static_cast<int>(session.screen({place.x + 6, place.y + 6, 1, 1}).pixels[0] & 0xffU);
    }
    Area windowArea() {
        const auto window = session.windowWithRole("main").value();
        auto& client = session.desktop().client();
        auto* geometry =
            xcb_get_geometry_reply(client.get(), xcb_get_geometry(client.get(), window), nullptr);
        auto* origin = xcb_translate_coordinates_reply(
            client.get(), xcb_translate_coordinates(client.get(), window, client.root(), 0, 0),
            nullptr);
        const Area area{origin->dst_x, origin->dst_y, geometry->width, geometry->height};
        std::free(geometry);
        std::free(origin);
        return area;
    }
    bool isDark() { return brightness() < 0x60; }
    void announce(const std::string& scheme) { session.desktop().bus({"color-scheme", scheme}); }
};

TEST_F(DarkDesktop, the_open_window_turns_dark_and_light_with_the_desktop) {
    const auto portal = session.desktop().startSettingsPortal("2");
    open();
    EXPECT_FALSE(isDark());
    const Picture light = session.screen(windowArea());
    announce("1");
    session.require("The dark window", [this] { return isDark(); });
    session.waitUntilStill();
    desktop::writePng(Session::pictureFile("settings-turned-dark"), session.screen(windowArea()));
    announce("0");
    session.require("The light window", [this] { return !isDark(); });
    session.waitUntilStill();
    EXPECT_EQ(desktop::difference(light, session.screen(windowArea())), "equal");
}

TEST_F(DarkDesktop, a_window_of_a_dark_desktop_is_dark_although_the_portal_is_asked_late) {
    const auto portal = session.desktop().startSettingsPortal("1");
    open();
    session.require("The dark window", [this] { return isDark(); });
    EXPECT_EQ(portal->countOf("asked"), 1U);
}

TEST_F(DarkDesktop, a_portal_that_hangs_holds_nothing_up) {
    const auto portal = session.desktop().startSettingsPortal("hangs");
    open();
    EXPECT_FALSE(isDark());
    panel.toggle("Play sounds");
}

}  // namespace
}  // namespace journeys
