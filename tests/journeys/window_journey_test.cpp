// Window mode: Space, hover, click.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "journeys/desktops_table.h"
#include "journeys/overlay_colors.h"
#include "journeys/session.h"

namespace journeys {
namespace {

namespace key = desktop::key;
using desktop::difference;

Place centreOf(const Area& area) {
    return {area.x + area.width / 2, area.y + area.height / 2};
}

class WindowCapture : public testing::TestWithParam<desktop::Compositor> {
  protected:
    explicit WindowCapture(nlohmann::json settings = {{"captureShadows", false}}) {
        session.writeSettings(std::move(settings));
        session.start();
        left = open({.x = 60, .y = 70, .width = 300, .height = 240, .seed = 11});
        right = open({.x = 500, .y = 300, .width = 260, .height = 200, .seed = 12});
        right->focus();
        session.waitUntilStill();
    }
    std::unique_ptr<desktop::TestWindow> open(const desktop::TestWindowOptions& options) {
        return std::make_unique<desktop::TestWindow>(session.desktop().displayName(), options);
    }
    std::uint32_t pixel(Place place) { return session.screen({place.x, place.y, 1, 1}).pixels[0]; }

    /// Space, then the pointer over `window` until it is highlighted.
    void hover(const desktop::TestWindow& window) {
        const Place at = centreOf(window.frame());
        const Place inside{at.x - window.place().x, at.y - window.place().y};
        const std::uint32_t original = window.picture().at(inside.x, inside.y);
        session.input().moveTo({at.x - 5, at.y - 5});
        session.input().moveTo(at);
        session.require("The highlight of the hovered window",
                        [&] { return isHighlighted(pixel(at), original); });
    }
    void openInWindowMode() {
        session.openOverlay();
        const std::size_t before = session.mark();
        session.input().tap(key::space);
        session.program().waitForLine(line::toggled, before);
    }
    /// Clicks where the pointer is and gives the saved picture.
    desktop::Png clickAndRead(const desktop::TestWindow& expected) {
        const std::size_t before = session.mark();
        session.input().pressButton();
        session.input().releaseButton();
        const std::string id = session.waitForLine(line::windowCopied, before);
        EXPECT_EQ(id, std::to_string(expected.id()));
        const std::string path = session.waitForLine(line::saved, before);
        session.waitUntilClosed();
        const auto bytes = desktop::readFile(path);
        EXPECT_EQ(session.clipboard().read("image/png"), bytes);
        return desktop::decodePng(bytes);
    }

    Session session{{.compositor = GetParam()}};
    std::unique_ptr<desktop::TestWindow> left;
    std::unique_ptr<desktop::TestWindow> right;
};

class WindowCaptureWithShadows : public WindowCapture {
  protected:
    WindowCaptureWithShadows() : WindowCapture(nlohmann::json::object()) {}
};

const auto desktops = testing::Values(desktop::Compositor::none, desktop::Compositor::picom);
const auto desktopName = [](const auto& parameter) {
    return parameter.param == desktop::Compositor::none ? "frozen" : "live";
};
INSTANTIATE_TEST_SUITE_P(Desktops, WindowCapture, desktops, desktopName);
INSTANTIATE_TEST_SUITE_P(Desktops, WindowCaptureWithShadows, desktops, desktopName);

TEST_P(WindowCapture, space_hover_and_click_take_the_hovered_window_with_its_frame) {
    const Picture expected = session.screen(left->frame());
    openInWindowMode();
    hover(*left);
    const auto png = clickAndRead(*left);
    EXPECT_EQ(difference(expected, png.picture), "equal");
    EXPECT_EQ(png.density, (desktop::Png::Density{2835, 2835}));
}

TEST_P(WindowCapture, a_click_closes_once_and_says_the_window) {
    openInWindowMode();
    hover(*right);
    const std::size_t before = session.mark();
    clickAndRead(*right);
    EXPECT_EQ(session.countSince(before, line::cursorRestored), 1U);
    EXPECT_EQ(session.countSince(before, line::windowCopied), 1U);
    EXPECT_EQ(session.countSince(before, line::regionCopied), 0U);
}

TEST_P(WindowCapture, over_empty_desktop_the_last_window_stays_chosen) {
    const Picture expected = session.screen(left->frame());
    openInWindowMode();
    hover(*left);
    session.input().moveTo({1200, 60});
    const Place inside = centreOf(left->frame());
    const std::uint32_t original =
        left->picture().at(inside.x - left->place().x, inside.y - left->place().y);
    EXPECT_TRUE(desktop::staysTrue([&] { return isHighlighted(pixel(inside), original); },
                                   std::chrono::milliseconds(150)));
    EXPECT_EQ(difference(expected, clickAndRead(*left).picture), "equal");
}

TEST_P(WindowCapture, the_frontmost_of_two_overlapping_windows_is_hovered) {
    const auto above = open({.x = 150, .y = 120, .width = 180, .height = 140, .seed = 13});
    above->focus();
    session.waitUntilStill();
    const Picture expected = session.screen(above->frame());
    openInWindowMode();
    hover(*above);
    EXPECT_EQ(difference(expected, clickAndRead(*above).picture), "equal");
}

TEST_P(WindowCapture, a_window_50_wide_is_never_offered_and_one_51_wide_is) {
    using enum desktop::TestWindowOptions::Decoration;
    const auto narrow =
        open({.x = 900, .y = 100, .width = 50, .height = 200, .decoration = none, .seed = 14});
    const auto wide =
        open({.x = 1000, .y = 100, .width = 51, .height = 200, .decoration = none, .seed = 15});
    ASSERT_EQ(narrow->frame().width, 50);
    ASSERT_EQ(wide->frame().width, 51);
    openInWindowMode();
    hover(*left);
    const Place onNarrow = centreOf(narrow->frame());
    session.input().moveTo(onNarrow);
    EXPECT_TRUE(
        desktop::staysTrue([&] { return isDimmed(pixel(onNarrow), narrow->picture().at(25, 100)); },
                           std::chrono::milliseconds(200)));
    hover(*wide);
    clickAndRead(*wide);
}

TEST_P(WindowCapture, a_click_with_nothing_hovered_captures_nothing_and_closes) {
    session.input().moveTo({1200, 60});
    openInWindowMode();
    session.require("The dimming", [&] {
        return isDimmed(pixel({20, 700}), session.wallpaper().at(20, 700));
    });
    const std::size_t before = session.mark();
    session.input().click({1200, 60});
    session.waitUntilClosed();
    EXPECT_TRUE(
        desktop::waitUntil([&] { return session.countSince(before, line::cursorRestored) == 2U; }));
    EXPECT_TRUE(session.downloads().empty());
    EXPECT_FALSE(session.clipboard().isOwned());
}

TEST_P(WindowCapture, space_twice_returns_to_the_region) {
    const Picture expected = session.screen({70, 90, 200, 100});
    openInWindowMode();
    hover(*left);
    std::size_t before = session.mark();
    session.input().tap(key::space);
    session.program().waitForLine(line::toggled, before);
    before = session.mark();
    session.input().drag({70, 90}, {270, 190});
    const std::string path = session.waitForLine(line::saved, before);
    EXPECT_EQ(difference(expected, desktop::decodePng(desktop::readFile(path)).picture), "equal");
    EXPECT_EQ(session.countSince(before, line::regionCopied), 1U);
}

TEST_P(WindowCapture, an_occluded_window_is_taken_whole) {
    const Picture expected = session.screen(left->frame());
    const auto cover = open({.x = 150, .y = 120, .width = 400, .height = 140, .seed = 13});
    openInWindowMode();
    const Place free{left->place().x + 20, left->place().y + 20};
    session.input().moveTo(free);
    session.require("The highlight",
                    [&] { return isHighlighted(pixel(free), left->picture().at(20, 20)); });
    EXPECT_EQ(difference(expected, clickAndRead(*left).picture), "equal");
}

TEST_P(WindowCapture, a_window_with_a_menu_open_above_it_is_taken_without_the_menu) {
    const TableRow row(
        TableGroup::windows,
        {GetParam() == desktop::Compositor::none ? "openbox" : "openbox, picom (xrender)",
         "a window below an open menu of its own program", "whole, without the menu"});
    right->focus();
    session.waitUntilStill();
    const Picture expected = session.screen(right->frame());
    const auto menu = open({.x = right->place().x + 60,
                            .y = right->place().y + 20,
                            .width = 120,
                            .height = 150,
                            .management = desktop::TestWindowOptions::Management::unmanaged,
                            .seed = 14,
                            .types = {"_NET_WM_WINDOW_TYPE_POPUP_MENU"}});
    session.waitUntilStill();
    openInWindowMode();
    const Place free{right->place().x + 20, right->place().y + 20};
    session.input().moveTo(free);
    session.require("The highlight",
                    [&] { return isHighlighted(pixel(free), right->picture().at(20, 20)); });
    EXPECT_EQ(difference(expected, clickAndRead(*right).picture), "equal");
}

TEST_P(WindowCaptureWithShadows, the_picture_is_the_frame_on_transparency_with_a_shadow) {
    const Picture frame = session.screen(left->frame());
    openInWindowMode();
    hover(*left);
    const auto png = clickAndRead(*left);
    EXPECT_TRUE(png.hasAlpha);
    ASSERT_GT(png.picture.width, frame.width);
    ASSERT_GT(png.picture.height, frame.height);
    bool found = false;
    for (int y = 0; y <= png.picture.height - frame.height && !found; ++y) {
        for (int x = 0; x <= png.picture.width - frame.width && !found; ++x) {
            found = png.picture.at(x + 150, y + 150) == frame.at(150, 150) &&
                    png.picture.cut(x, y, frame.width, frame.height) == frame;
        }
    }
    EXPECT_TRUE(found) << "The frame is not in the picture pixel by pixel.";
    EXPECT_LT(png.picture.at(0, 0) >> 24U, 16U) << "The shadow does not fade out.";
    desktop::writePng(
        Session::pictureFile(std::string("window-with-shadow-") +
                             (GetParam() == desktop::Compositor::none ? "frozen" : "live")),
        png.picture);
}

}  // namespace
}  // namespace journeys
