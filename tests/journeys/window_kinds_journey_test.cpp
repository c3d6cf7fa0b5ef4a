// Window mode over the windows that are not plain: of programs that do not answer, partly off the
// screen, shaded, and such that change between hover and click.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>

#include "journeys/desktops_table.h"
#include "journeys/overlay_colors.h"
#include "journeys/window_kinds.h"

namespace journeys {
namespace {

using desktop::difference;

INSTANTIATE_TEST_SUITE_P(Desktops, WindowKinds,
                         testing::ValuesIn(setUpsNamed({"openbox", "openbox_picom_xrender"})),
                         setUpName);

TEST_P(WindowKinds, what_a_stopped_program_shows_is_in_the_picture) {
    const TableRow row(
        TableGroup::windows,
        {GetParam().title, "a window of a stopped program, half covered by another one",
         isLive() ? "whole" : "what showed of it; the rest as its program repaints it in time"});
    auto terminal = session.desktop().startOther(
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

TEST_P(WindowKinds, the_highlight_stays_where_the_window_was_listed) {
    const TableRow row(TableGroup::windows,
                       {GetParam().title, "a window that moves while it is highlighted",
                        "the highlight stays, also when the pointer moves on"});
    const Place at{300, 300};
    const std::uint32_t beneath = pixel(at);
    const auto window = open({.x = 200, .y = 150, .width = 300, .height = 240});
    window->focus();
    session.waitUntilStill();
    const std::uint32_t covered = pixel(at);
    const Place origin = window->place();
    const auto beneathLater = session.screen({700, 400, 300, 300});
    hover(at);
    configure(window->id(), XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, {700, 400});
    session.require("The moving of the window", [&] { return window->place().x > 600; });
    session.input().moveTo({at.x + 20, at.y + 10});
    const auto isHighlightedWhereItWas = [&] {
        return isHighlighted(pixel(at), isLive() ? beneath : covered);
    };
    session.require("The highlight where the window was", isHighlightedWhereItWas);
    const Place now = window->place();
    const Place later{now.x + at.x - origin.x, now.y + at.y - origin.y};
    const auto isDimmedWhereItIs = [&] {
        return isDimmed(pixel(later),
                        isLive() ? covered : beneathLater.at(later.x - 700, later.y - 400));
    };
    session.require("The dimming where it is", isDimmedWhereItIs);
    session.input().moveTo({later.x - 1, later.y});
    session.input().moveTo(later);
    EXPECT_TRUE(desktop::staysTrue([&] { return isHighlightedWhereItWas() && isDimmedWhereItIs(); },
                                   std::chrono::milliseconds(200)));
    session.cancelOverlay();
}

TEST_P(WindowKinds, a_window_that_is_resized_before_the_click_has_its_new_size_when_it_is_live) {
    const TableRow row(TableGroup::windows,
                       {GetParam().title, "a window that is resized between hover and click",
                        isLive() ? "its new size" : "as it was when the overlay opened"});
    auto terminal = session.desktop().startOther(
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

}  // namespace
}  // namespace journeys
