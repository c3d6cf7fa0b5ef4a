// The journeys that matter most, under every window manager and compositor.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "journeys/desktops_table.h"
#include "journeys/overlay_colors.h"
#include "journeys/session.h"
#include "journeys/set_ups.h"
#include "journeys/window_difference.h"

namespace journeys {
namespace {

namespace key = desktop::key;
using desktop::difference;
using testing::ElementsAre;

Place centreOf(const Area& area) {
    return {area.x + area.width / 2, area.y + area.height / 2};
}

class SetUps : public testing::TestWithParam<SetUp> {
  protected:
    SetUps() {
        session.writeSettings({{"captureShadows", false}});
        session.start();
        below = open({.x = 160, .y = 150, .width = 300, .height = 240, .seed = 11});
        front = open({.x = 400, .y = 300, .width = 260, .height = 200, .seed = 12});
        focusFront();
    }
    std::unique_ptr<desktop::TestWindow> open(const desktop::TestWindowOptions& options) {
        return std::make_unique<desktop::TestWindow>(session.desktop().displayName(), options);
    }
    /// Also waits for the title bars that change colour with it.
    void focusFront() {
        front->focus();
        if (GetParam().windowManager != desktop::WindowManager::none) {
            session.require("The window in front becoming active",
                            [&] { return session.activeWindow() == front->id(); });
        }
        // On the screen with it is all that the window manager painted before: a busy compositor
        // may show nothing for longer than a screen has to be still.
        open({.x = 1200,
              .y = 700,
              .width = 8,
              .height = 8,
              .management = desktop::TestWindowOptions::Management::unmanaged});
        session.waitUntilStill();
    }
    std::uint32_t pixel(Place place) { return session.screen({place.x, place.y, 1, 1}).pixels[0]; }
    /// Presses the button of the moment and gives the picture that comes of it.
    Picture release(const char* copied) {
        const std::size_t before = session.mark();
        session.input().releaseButton();
        session.waitForLine(copied, before);
        const std::string path = session.waitForLine(line::saved, before);
        session.waitUntilClosed();
        const auto bytes = desktop::readFile(path);
        EXPECT_EQ(session.clipboard().read("image/png"), bytes);
        return desktop::decodePng(bytes).picture;
    }
    Picture takeRegion(const Area& area) {
        session.openOverlay();
        session.input().moveTo({area.x, area.y});
        session.input().pressButton();
        session.input().moveInSteps({area.x, area.y}, {area.x + area.width, area.y + area.height});
        return release(line::regionCopied);
    }
    Picture takeWindow(const desktop::TestWindow& window, Place at) {
        session.openOverlay();
        const std::size_t before = session.mark();
        session.input().tap(key::space);
        session.program().waitForLine(line::toggled, before);
        session.input().moveTo({at.x - 1, at.y});
        session.input().moveTo(at);
        const Place inside{at.x - window.place().x, at.y - window.place().y};
        const std::uint32_t original = window.picture().at(inside.x, inside.y);
        session.require("The highlight", [&] { return isHighlighted(pixel(at), original); });
        session.input().pressButton();
        return release(line::windowCopied);
    }

    /// For a quarter of a second an overlay leaves its snapshot to the next one.
    void waitForFreshSnapshots(std::size_t closed) {
        EXPECT_TRUE(
            desktop::staysTrue([&] { return session.countSince(closed, line::cursorSet) == 0; },
                               std::chrono::milliseconds(350)));
    }
    bool isSupported(const char* name) {
        const auto& client = session.desktop().client();
        const xcb_atom_t wanted = client.atom(name);
        const auto atoms =
            client.property(client.root(), "_NET_SUPPORTED").value_or(std::vector<std::uint8_t>{});
        for (std::size_t index = 0; index + 4 <= atoms.size(); index += 4) {
            if (std::memcmp(atoms.data() + index, &wanted, 4) == 0) {
                return true;
            }
        }
        return false;
    }

    // Where no window is there is nothing to read, which takes no time.
    Session session{
        {.windowManager = GetParam().windowManager, .compositor = GetParam().compositor},
        desktop::Wallpaper::Motif::gradient};
    std::unique_ptr<desktop::TestWindow> below;
    std::unique_ptr<desktop::TestWindow> front;
};

INSTANTIATE_TEST_SUITE_P(Desktops, SetUps, testing::ValuesIn(everySetUp()), setUpName);

TEST_P(SetUps, give_regions_and_windows_and_let_go) {
    const TableRow row(
        TableGroup::windowManagers,
        {GetParam().title,
         "a region, the window in front, a covered window, text, Escape in a drag, "
         "always-on-top, full-screen, panel and notification windows below the overlay",
         "exact"});
    using enum desktop::TestWindowOptions::Management;
    using enum desktop::TestWindowOptions::Decoration;
    const Picture undisturbed = session.screen({0, 0, 1280, 800});
    {
        SCOPED_TRACE("a region");
        const Area area{100, 110, 500, 400};
        const Picture expected = session.screen(area);
        EXPECT_EQ(difference(expected, takeRegion(area)), "equal");
    }
    {
        SCOPED_TRACE("the window in front");
        const Picture own = session.screen(front->frame());
        const Picture taken = takeWindow(*front, centreOf(front->frame()));
        desktop::writePng(Session::pictureFile("window-" + GetParam().name), taken);
        EXPECT_EQ(windowDifference(own, taken), "equal");
    }
    {
        SCOPED_TRACE("a window that another one covers");
        const Place free{below->place().x + 20, below->place().y + 20};
        const Picture taken = takeWindow(*below, free);
        const Area frame = below->frame();
        ASSERT_EQ(taken.width, frame.width);
        ASSERT_EQ(taken.height, frame.height);
        const Place place = below->place();
        EXPECT_EQ(difference(below->picture(),
                             taken.cut(place.x - frame.x, place.y - frame.y, below->picture().width,
                                       below->picture().height)),
                  "equal");
    }
    {
        SCOPED_TRACE("text");
        const Area area{100, 110, 120, 30};
        session.openRecognitionOverlay();
        const std::size_t before = session.mark();
        session.input().drag({area.x, area.y}, {area.x + area.width, area.y + area.height});
        session.program().waitForLine(line::saved, before);
        session.waitUntilClosed();
    }
    {
        SCOPED_TRACE("giving up");
        session.openOverlay();
        session.openOverlay();
        const std::size_t before = session.mark();
        session.input().moveTo({100, 100});
        session.input().pressButton();
        session.input().moveInSteps({100, 100}, {400, 300});
        session.input().tap(key::escape);
        session.waitUntilClosed();
        session.input().releaseButton();
        EXPECT_TRUE(desktop::waitUntil(
            [&] { return session.countSince(before, line::cursorRestored) == 1U; }));
        EXPECT_EQ(session.countSince(before, line::saved), 0U);
        EXPECT_TRUE(desktop::waitUntil([&] {
            return session.screen({0, 0, 1280, 800}) == undisturbed;
        }));
        EXPECT_TRUE(desktop::waitUntil(
            [&] { return session.desktop().client().inputFocus() == front->id(); }));
        front->takeKeys();
        session.input().tap(key::a);
        EXPECT_THAT(front->takeKeys(), ElementsAre(key::a));
    }
    {
        SCOPED_TRACE("a window that is always on top");
        const std::size_t closed = session.mark();
        const auto onTop = open({.x = 500,
                                 .y = 350,
                                 .width = 220,
                                 .height = 180,
                                 .seed = 24,
                                 .states = {"_NET_WM_STATE_ABOVE"}});
        waitForFreshSnapshots(closed);
        if (isSupported("_NET_WM_STATE_ABOVE")) {
            focusFront();
        }
        session.waitUntilStill();
        const Place overlap{onTop->place().x + 30, onTop->place().y + 30};
        ASSERT_LT(overlap.x, front->place().x + front->picture().width);
        ASSERT_LT(overlap.y, front->place().y + front->picture().height);
        EXPECT_EQ(pixel(overlap), onTop->picture().at(30, 30));
        const Area area{380, 280, 400, 300};
        const Picture expected = session.screen(area);
        session.openOverlay();
        session.input().moveTo({area.x, area.y});
        session.input().pressButton();
        session.input().moveTo({area.x + 20, area.y + 20});
        session.require("The dimming",
                        [&] { return isDimmed(pixel(overlap), onTop->picture().at(30, 30)); });
        session.input().moveTo({area.x + area.width, area.y + area.height});
        EXPECT_EQ(difference(expected, release(line::regionCopied)), "equal");
    }
    {
        SCOPED_TRACE("windows that lie above others");
        const std::size_t closed = session.mark();
        const auto fullScreen = open({.x = 0,
                                      .y = 0,
                                      .width = 1280,
                                      .height = 800,
                                      .decoration = none,
                                      .seed = 21,
                                      .states = {"_NET_WM_STATE_FULLSCREEN"}});
        const auto panel = open({.x = 0,
                                 .y = 760,
                                 .width = 1280,
                                 .height = 40,
                                 .management = unmanaged,
                                 .seed = 22,
                                 .types = {"_NET_WM_WINDOW_TYPE_DOCK"}});
        const auto notification = open({.x = 900,
                                        .y = 40,
                                        .width = 300,
                                        .height = 90,
                                        .management = unmanaged,
                                        .seed = 23,
                                        .types = {"_NET_WM_WINDOW_TYPE_NOTIFICATION"}});
        waitForFreshSnapshots(closed);
        session.waitUntilStill();
        const Area area{400, 20, 860, 770};
        const Picture expected = session.screen(area);
        session.openOverlay();
        session.input().moveTo({area.x, area.y});
        session.input().pressButton();
        session.input().moveTo({area.x + 20, area.y + 20});
        session.require("The dimming of all of them", [&] {
            return isDimmed(pixel({950, 60}), notification->picture().at(50, 20)) &&
                   isDimmed(pixel({50, 780}), panel->picture().at(50, 20)) &&
                   isDimmed(pixel({50, 50}), fullScreen->picture().at(50, 50));
        });
        session.input().moveTo({area.x + area.width, area.y + area.height});
        EXPECT_EQ(difference(expected, release(line::regionCopied)), "equal");
    }
}

}  // namespace
}  // namespace journeys
