// Window mode over the windows that are not plain: of programs that do not answer, that decorate
// themselves, partly off the screen, shaded, and such that change between hover and click.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstring>

#include "journeys/desktops_table.h"
#include "journeys/overlay_colors.h"
#include "journeys/session.h"
#include "journeys/set_ups.h"

namespace journeys {
namespace {

namespace key = desktop::key;
using desktop::Compositor;
using desktop::difference;

class WindowKinds : public testing::TestWithParam<SetUp> {
  protected:
    WindowKinds() {
        session.writeSettings({{"captureShadows", false}});
        session.start();
    }
    static bool isLive() { return GetParam().compositor != Compositor::none; }
    std::unique_ptr<desktop::TestWindow> open(const desktop::TestWindowOptions& options) {
        auto window =
            std::make_unique<desktop::TestWindow>(session.desktop().displayName(), options);
        return window;
    }
    std::uint32_t pixel(Place place) { return session.screen({place.x, place.y, 1, 1}).pixels[0]; }
    /// Opens window mode with the pointer at `at` and waits until the window there is highlighted.
    void hover(Place at) {
        session.waitUntilStill();
        const std::uint32_t original = pixel(at);
        session.openOverlay();
        const std::size_t before = session.mark();
        session.input().tap(key::space);
        session.program().waitForLine(line::toggled, before);
        session.input().moveTo({at.x - 1, at.y});
        session.input().moveTo(at);
        session.require("The highlight", [&] { return isHighlighted(pixel(at), original); });
    }
    desktop::Png click() {
        const std::size_t before = session.mark();
        session.input().pressButton();
        session.input().releaseButton();
        session.waitForLine(line::windowCopied, before);
        const std::string path = session.waitForLine(line::saved, before);
        session.waitUntilClosed();
        return desktop::decodePng(desktop::readFile(path));
    }
    xcb_window_t windowTitled(const std::string& title) {
        auto& client = session.desktop().client();
        xcb_window_t found = XCB_WINDOW_NONE;
        session.require("The window \"" + title + "\"", [&] {
            const auto list = client.property(client.root(), "_NET_CLIENT_LIST")
                                  .value_or(std::vector<std::uint8_t>{});
            for (std::size_t index = 0; index + 4 <= list.size(); index += 4) {
                xcb_window_t window = XCB_WINDOW_NONE;
                std::memcpy(&window, list.data() + index, sizeof window);
                const auto name = client.property(window, "WM_NAME");
                if (name && std::string(name->begin(), name->end()) == title) {
                    found = window;
                }
            }
            return found != XCB_WINDOW_NONE && session.activeWindow() == found;
        });
        session.waitUntilStill();
        return found;
    }
    Area areaOf(xcb_window_t window) {
        auto& client = session.desktop().client();
        const desktop::Reply<xcb_get_geometry_reply_t> size(
            xcb_get_geometry_reply(client.get(), xcb_get_geometry(client.get(), window), nullptr));
        const desktop::Reply<xcb_translate_coordinates_reply_t> place(
            xcb_translate_coordinates_reply(
                client.get(), xcb_translate_coordinates(client.get(), window, client.root(), 0, 0),
                nullptr));
        return size && place ? Area{place->dst_x, place->dst_y, size->width, size->height} : Area{};
    }
    /// Left, right, top, bottom.
    std::array<int, 4> extentsOf(xcb_window_t window, const std::string& property) {
        std::array<int, 4> extents{};
        const auto bytes = session.desktop().client().property(window, property);
        if (bytes && bytes->size() == sizeof extents) {
            std::memcpy(extents.data(), bytes->data(), sizeof extents);
        }
        return extents;
    }
    void configure(xcb_window_t window, std::uint16_t mask,
                   const std::vector<std::uint32_t>& values) {
        auto& client = session.desktop().client();
        xcb_configure_window(client.get(), window, mask, values.data());
        client.synchronize();
    }

    Session session{
        {.windowManager = GetParam().windowManager, .compositor = GetParam().compositor}};
};

INSTANTIATE_TEST_SUITE_P(Desktops, WindowKinds,
                         testing::ValuesIn(setUpsNamed({"openbox", "openbox_picom_xrender"})),
                         setUpName);

TEST_P(WindowKinds, what_a_stopped_program_shows_is_in_the_picture) {
    const TableRow row(
        TableGroup::windows,
        {GetParam().title, "a window of a stopped program, half covered by another one",
         isLive() ? "whole" : "what showed of it; the rest as its program repaints it in time"});
    auto terminal = session.desktop().start(
        "xterm", {"xterm", "-T", "stopped", "-geometry", "60x16+200+150", "+bc", "-xrm",
                  "XTerm.vt100.cursorBlink: false", "-e", "sh", "-c",
                  "yes 'This program is going to stop.' | head -15; printf '\\033[?25l'; cat"});
    const xcb_window_t window = windowTitled("stopped");
    const Area area = areaOf(window);
    session.require("The text", [&] {
        const Picture shown = session.screen(area);
        const auto last = shown.pixels.begin() + 14 * 16 * area.width;
        return std::find(shown.pixels.begin() + 11 * 16 * area.width, last, 0xff000000U) != last;
    });
    session.waitUntilStill();
    // The decoration changes its colour with the focus, the text does not.
    const Picture text = session.screen(area);
    const auto menu = open({.x = area.x + 100,
                            .y = area.y + 60,
                            .width = 500,
                            .height = 80,
                            .management = desktop::TestWindowOptions::Management::unmanaged});
    terminal->signal(SIGSTOP);
    hover({area.x + 20, area.y + area.height - 20});
    const auto png = click();
    terminal->signal(SIGCONT);
    const auto [left, right, top, bottom] = extentsOf(window, "_NET_FRAME_EXTENTS");
    ASSERT_EQ(png.picture.width, area.width + left + right);
    ASSERT_EQ(png.picture.height, area.height + top + bottom);
    Picture taken = png.picture.cut(left, top, area.width, area.height);
    if (!isLive()) {
        // What the menu covered is as the program repaints it, which this one does not.
        for (int y = 60; y < 140; ++y) {
            for (int x = 100; x < area.width; ++x) {
                const auto index = static_cast<std::size_t>(y * area.width + x);
                taken.pixels[index] = text.pixels[index];
            }
        }
    }
    EXPECT_EQ(difference(text, taken), "equal");
}

TEST_P(WindowKinds, a_window_partly_off_the_screen_is_taken_whole) {
    const TableRow row(TableGroup::windows,
                       {GetParam().title, "a window of which a corner is on the screen", "whole"});
    const auto window = open({.x = 200, .y = 150, .width = 300, .height = 240});
    window->focus();
    session.waitUntilStill();
    const Picture expected = session.screen(window->frame());
    configure(window->id(), XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y,
              {static_cast<std::uint32_t>(-150), 700});
    session.require("The moving of the window", [&] { return window->place().x < -100; });
    hover({60, 760});
    EXPECT_EQ(difference(expected, click().picture), "equal");
}

TEST_P(WindowKinds, a_window_that_moves_before_the_click_is_taken_all_the_same) {
    const TableRow row(TableGroup::windows,
                       {GetParam().title, "a window that moves between hover and click", "exact"});
    const auto window = open({.x = 200, .y = 150, .width = 300, .height = 240});
    window->focus();
    session.waitUntilStill();
    const Picture expected = session.screen(window->frame());
    hover({300, 300});
    configure(window->id(), XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, {700, 400});
    session.require("The moving of the window", [&] { return window->place().x > 600; });
    EXPECT_EQ(difference(expected, click().picture), "equal");
}

TEST_P(WindowKinds, a_window_that_is_resized_before_the_click_has_its_new_size_when_it_is_live) {
    const TableRow row(TableGroup::windows,
                       {GetParam().title, "a window that is resized between hover and click",
                        isLive() ? "its new size" : "as it was when the overlay opened"});
    auto terminal = session.desktop().start(
        "xterm", {"xterm", "-T", "resized", "-geometry", "60x16+200+150", "-e", "cat"});
    const xcb_window_t window = windowTitled("resized");
    const Area before = areaOf(window);
    hover({before.x + 50, before.y + before.height - 30});
    configure(window, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, {200, 120});
    session.require("The resizing", [&] { return areaOf(window).width < before.width - 100; });
    session.desktop().client().synchronize();
    const Area after = !isLive() ? before : areaOf(window);
    const Picture taken = click().picture;
    EXPECT_NEAR(taken.width, after.width, 12);
    EXPECT_NEAR(taken.height, after.height + 24, 16);
}

TEST_P(WindowKinds, a_window_that_closes_before_the_click_gives_nothing_and_says_nothing) {
    const TableRow row(
        TableGroup::windows,
        {GetParam().title, "a window that closes between hover and click", "no picture, no word"});
    auto window = open({.x = 200, .y = 150, .width = 300, .height = 240});
    window->focus();
    hover({300, 300});
    const std::size_t before = session.mark();
    window.reset();
    session.waitUntilStill();
    session.input().pressButton();
    session.input().releaseButton();
    session.waitUntilClosed();
    EXPECT_TRUE(desktop::staysTrue([&] { return session.downloads().empty(); },
                                   std::chrono::milliseconds(150)));
    EXPECT_THAT(session.linesSince(before),
                testing::ElementsAre(testing::StartsWith(line::mouseDown), line::cursorRestored));
}

/// Where the window manager shades.
class Shading : public WindowKinds {};

INSTANTIATE_TEST_SUITE_P(Desktops, Shading,
                         testing::ValuesIn(setUpsNamed({"openbox", "openbox_picom_xrender", "xfwm4",
                                                        "xfwm4_compositing", "kwin_x11",
                                                        "kwin_x11_compositing"})),
                         setUpName);

TEST_P(Shading, of_a_shaded_window_nothing_is_offered) {
    const TableRow row(TableGroup::windows, {GetParam().title, "a shaded window",
                                             "its title bar is too low to be offered"});
    const auto window = open({.x = 200, .y = 150, .width = 300, .height = 240});
    const auto other = open({.x = 700, .y = 150, .width = 300, .height = 240, .seed = 5});
    other->focus();
    session.waitUntilStill();
    auto& client = session.desktop().client();
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window->id();
    message.type = client.atom("_NET_WM_STATE");
    message.data.data32[0] = 1;
    message.data.data32[1] = client.atom("_NET_WM_STATE_SHADED");
    xcb_send_event(client.get(), 0, client.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    client.synchronize();
    session.require("The shading", [&] {
        return pixel({300, 300}) == session.wallpaper().at(300, 300);
    });
    hover({850, 250});
    const Place bar{window->frame().x + 40, window->frame().y + 8};
    session.input().moveTo({bar.x - 1, bar.y});
    session.input().moveTo(bar);
    // It is the other window that stays chosen.
    const Picture taken = click().picture;
    ASSERT_EQ(taken.width, other->frame().width);
    EXPECT_EQ(
        difference(other->picture(), taken.cut(other->place().x - other->frame().x,
                                               other->place().y - other->frame().y, 300, 240)),
        "equal");
}

/// KWin keeps decorations out of the windows' pixmaps.
class KWinDecoration : public WindowKinds {};

INSTANTIATE_TEST_SUITE_P(Desktops, KWinDecoration,
                         testing::ValuesIn(setUpsNamed({"kwin_x11_compositing"})), setUpName);

TEST_P(KWinDecoration, of_a_window_is_left_out_where_another_window_covers_it) {
    const TableRow row(TableGroup::windows,
                       {GetParam().title, "a window of which the title bar is covered",
                        "whole, without its decoration"});
    const auto window = open({.x = 200, .y = 150, .width = 300, .height = 240});
    window->focus();
    const auto cover = open({.x = 300,
                             .y = 140,
                             .width = 500,
                             .height = 120,
                             .management = desktop::TestWindowOptions::Management::unmanaged,
                             .seed = 5});
    hover({window->place().x + 20, window->place().y + 200});
    EXPECT_EQ(difference(window->picture(), click().picture), "equal");
}

TEST_P(KWinDecoration, has_transparent_corners) {
    const TableRow row(TableGroup::windows,
                       {GetParam().title, "a window with a decoration of round corners",
                        "nothing of what lies behind it"});
    const auto window = open({.x = 200, .y = 150, .width = 300, .height = 240});
    window->focus();
    hover({300, 300});
    const Picture taken = click().picture;
    desktop::writePng(Session::pictureFile("round-" + GetParam().name), taken);
    ASSERT_GT(taken.height, 240) << "with its decoration";
    EXPECT_EQ(taken.at(0, 0) >> 24U, 0U);
    for (int y = 0; y < 8; ++y) {
        for (int x = 0; x < 8; ++x) {
            EXPECT_EQ(taken.at(x, y), taken.at(taken.width - 1 - x, y)) << x << ", " << y;
        }
    }
}

/// GTK 3 and GTK 4, with their shadows and without.
class SelfDecorated : public WindowKinds {
  protected:
    struct Shown {
        std::unique_ptr<desktop::Process> program;
        /// With its shadow.
        Area whole;
        Area visible;
    };
    Shown show(int version) {
        const std::string title = "GTK " + std::to_string(version);
        auto program = session.desktop().startGtkWindow(version, title);
        const xcb_window_t window = windowTitled(title);
        const Area whole = areaOf(window);
        const auto [left, right, top, bottom] = extentsOf(window, "_GTK_FRAME_EXTENTS");
        const Area visible{whole.x + left, whole.y + top, whole.width - left - right,
                           whole.height - top - bottom};
        // It is mapped before its first frame.
        session.require("The window on the screen", [&] {
            const Picture line =
                session.screen({visible.x, visible.y + visible.height - 10, visible.width, 1});
            return std::count(line.pixels.begin(), line.pixels.end(), line.at(30, 0)) >
                   visible.width / 2;
        });
        session.waitUntilStill();
        return {std::move(program), whole, visible};
    }
    /// Where the picture is opaque it is what the screen shows; corners are softened.
    static void expectOpaquePartsOf(const Picture& screen, const Picture& taken) {
        constexpr int corner = 12;
        std::size_t opaque = 0;
        for (int y = 0; y < taken.height; ++y) {
            for (int x = 0; x < taken.width; ++x) {
                const bool isInCorner = (x < corner || x >= taken.width - corner) &&
                                        (y < corner || y >= taken.height - corner);
                if (taken.at(x, y) >> 24U == 255 && !isInCorner) {
                    ++opaque;
                    ASSERT_EQ(taken.at(x, y), screen.at(x, y)) << "at " << x << ", " << y;
                }
            }
        }
        EXPECT_GT(opaque, taken.pixels.size() / 2);
    }
    void check(int version) {
        SCOPED_TRACE("GTK " + std::to_string(version));
        session.writeSettings({{"captureShadows", false}});
        const Shown shown = show(version);
        const Place at{shown.visible.x + 30, shown.visible.y + shown.visible.height - 20};
        const std::string name = "gtk" + std::to_string(version) + "-" + GetParam().name;
        {
            const Picture screen = session.screen(shown.visible);
            hover(at);
            const Picture taken = click().picture;
            ASSERT_EQ(taken.width, shown.visible.width);
            ASSERT_EQ(taken.height, shown.visible.height);
            expectOpaquePartsOf(screen, taken);
            if (isLive()) {
                EXPECT_LT(taken.at(0, 0) >> 24U, 200U) << "a round corner";
            }
            desktop::writePng(Session::pictureFile(name + "-without-shadow"), taken);
        }
        {
            session.writeSettings({{"captureShadows", true}});
            hover(at);
            const Picture taken = click().picture;
            if (isLive()) {
                EXPECT_EQ(taken.width, shown.whole.width) << "its own shadow";
                EXPECT_EQ(taken.height, shown.whole.height);
            }
            EXPECT_GT(taken.width, shown.visible.width);
            EXPECT_LT(taken.at(0, 0) >> 24U, 16U);
            desktop::writePng(Session::pictureFile(name + "-with-shadow"), taken);
        }
    }
};

INSTANTIATE_TEST_SUITE_P(Desktops, SelfDecorated,
                         testing::ValuesIn(setUpsNamed({"openbox", "xfwm4_compositing",
                                                        "kwin_x11_compositing", "mutter"})),
                         setUpName);

TEST_P(SelfDecorated, windows_of_gtk_3_and_4_keep_their_corners_and_shadow) {
    const TableRow row(
        TableGroup::windows,
        {GetParam().title,
         "windows of GTK 3 and GTK 4 that decorate themselves, shadows off and on",
         isLive() ? "the visible frame, round corners transparent; with the window's "
                    "own shadow"
                  : "the visible frame; with a drawn shadow"});
    check(3);
    check(4);
}

}  // namespace
}  // namespace journeys
