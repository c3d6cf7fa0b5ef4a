// Touch screens, pens, other buttons, other hands.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "desktop/touch_and_pen.h"
#include "journeys/desktops_table.h"
#include "journeys/overlay_colors.h"
#include "journeys/session.h"

namespace journeys {
namespace {

namespace key = desktop::key;
using desktop::Compositor;
using desktop::difference;

/// A server with real devices beside the keys and the pointer.
class TouchAndPen : public testing::TestWithParam<Compositor> {
  protected:
    void SetUp() override {
        if (::geteuid() != 0) {
            GTEST_SKIP() << "A server with devices needs root.";
        }
        session = std::make_unique<Session>(desktop::DesktopOptions{
            .server = desktop::ServerKind::x11WithTouchAndPen, .compositor = GetParam()});
        session->writeSettings({{"captureShadows", false}});
        session->start();
        window = std::make_unique<desktop::TestWindow>(
            session->desktop().displayName(),
            desktop::TestWindowOptions{.x = 700, .y = 300, .width = 300, .height = 240});
        window->focus();
        session->waitUntilStill();
        const Picture screen = desktop::readScreen(session->desktop().client());
        touch = std::make_unique<desktop::TouchDevice>(session->desktop().directory(), screen.width,
                                                       screen.height);
        pen = std::make_unique<desktop::PenDevice>(session->desktop().directory(), screen.width,
                                                   screen.height);
    }
    Picture pictureOfRegion(const std::function<void()>& drag) {
        session->openOverlay();
        const std::size_t before = session->mark();
        drag();
        const std::string path = session->waitForLine(line::saved, before);
        EXPECT_EQ(session->countSince(before, line::regionCopied), 1U);
        session->waitUntilClosed();
        return desktop::decodePng(desktop::readFile(path)).picture;
    }

    std::unique_ptr<Session> session;
    std::unique_ptr<desktop::TestWindow> window;
    std::unique_ptr<desktop::TouchDevice> touch;
    std::unique_ptr<desktop::PenDevice> pen;
};

const auto compositorName = [](const auto& parameter) {
    return parameter.param == Compositor::none ? "frozen" : "live";
};
INSTANTIATE_TEST_SUITE_P(Desktops, TouchAndPen,
                         testing::Values(Compositor::none, Compositor::picom), compositorName);

TEST_P(TouchAndPen, select_and_point_like_the_mouse) {
    const std::string blending = GetParam() == Compositor::none ? "" : ", with a compositor";
    const Picture expected = session->wallpaper().cut(100, 110, 300, 200);
    {
        const TableRow row(TableGroup::input,
                           {"Touch screen" + blending,
                            "a finger's drag selects, a second finger does not disturb; a tap "
                            "takes a window",
                            "as with the mouse"});
        EXPECT_EQ(difference(expected, pictureOfRegion([&] {
                                 touch->begin(1, {100, 110});
                                 touch->move(1, {200, 200});
                                 touch->begin(2, {900, 700});
                                 touch->move(2, {950, 650});
                                 touch->end(2, {950, 650});
                                 touch->move(1, {400, 310});
                                 touch->end(1, {400, 310});
                             })),
                  "equal");
        session->openOverlay();
        std::size_t before = session->mark();
        session->input().tap(key::space);
        session->program().waitForLine(line::toggled, before);
        before = session->mark();
        touch->begin(3, {800, 400});
        touch->end(3, {800, 400});
        EXPECT_EQ(session->waitForLine(line::windowCopied, before), std::to_string(window->id()));
        session->waitUntilClosed();
    }
    {
        const TableRow row(
            TableGroup::input,
            {"Pen" + blending, "comes near, presses, draws, lifts, goes", "as with the mouse"});
        EXPECT_EQ(difference(expected, pictureOfRegion([&] {
                                 pen->approach({100, 110});
                                 pen->pressTip();
                                 pen->move({250, 250});
                                 pen->move({400, 310});
                                 pen->releaseTip();
                                 pen->leave({400, 310});
                             })),
                  "equal");
    }
}

class Buttons : public testing::TestWithParam<Compositor> {
  protected:
    Buttons() {
        session.writeSettings(nlohmann::json::object());
        session.start();
        window = std::make_unique<desktop::TestWindow>(
            session.desktop().displayName(),
            desktop::TestWindowOptions{.x = 700, .y = 300, .width = 300, .height = 240});
        window->focus();
        session.waitUntilStill();
    }
    void expectCapture(std::size_t before, const Area& area) {
        session.waitForLine(line::saved, before);
        EXPECT_EQ(difference(session.wallpaper().cut(area.x, area.y, area.width, area.height),
                             session.clipboardPicture().picture),
                  "equal");
        EXPECT_EQ(session.countSince(before, line::regionCopied), 1U);
        session.waitUntilClosed();
    }
    std::string blending() const {
        return GetParam() == Compositor::none ? "" : ", with a compositor";
    }

    Session session{{.compositor = GetParam()}};
    desktop::InputDriver& input = session.input();
    std::unique_ptr<desktop::TestWindow> window;
};

INSTANTIATE_TEST_SUITE_P(Desktops, Buttons, testing::Values(Compositor::none, Compositor::picom),
                         compositorName);

TEST_P(Buttons, other_than_the_first_do_nothing) {
    const TableRow row(
        TableGroup::input,
        {"Buttons 2 to 9" + blending(),
         "clicks and drags with each, alone and during a drag with the first", "nothing happens"});
    session.openOverlay();
    const std::size_t before = session.mark();
    for (std::uint8_t button = 2; button <= 9; ++button) {
        input.moveTo({300, 300});
        input.pressButton(button);
        input.moveInSteps({300, 300}, {500, 500}, 2);
        input.releaseButton(button);
    }
    input.moveTo({100, 110});
    input.pressButton();
    input.moveTo({200, 150});
    input.pressButton(3);
    input.releaseButton(3);
    input.pressButton(2);
    input.releaseButton(2);
    EXPECT_TRUE(session.isOpen());
    EXPECT_EQ(session.countSince(before, line::cursorRestored), 0U);
    input.moveTo({300, 210});
    input.releaseButton();
    expectCapture(before, {100, 110, 200, 100});
    EXPECT_EQ(session.countSince(before, line::mouseDown), 1U);
}

TEST_P(Buttons, one_that_is_held_while_the_shortcut_is_pressed_belongs_to_the_window_below) {
    const TableRow row(TableGroup::input,
                       {"A button held while the shortcut is pressed" + blending(),
                        "its release, then a drag", "the release does nothing, the drag selects"});
    input.moveTo({750, 400});
    input.pressButton();
    session.openOverlay();
    const std::size_t before = session.mark();
    input.moveInSteps({750, 400}, {500, 400}, 4);
    input.releaseButton();
    EXPECT_TRUE(
        desktop::staysTrue([&] { return session.isOpen(); }, std::chrono::milliseconds(150)));
    input.drag({100, 110}, {300, 210});
    expectCapture(before, {100, 110, 200, 100});
}

TEST_P(Buttons, are_those_that_the_hand_of_the_person_has_chosen) {
    const TableRow row(TableGroup::input, {"Left-handed mouse (buttons 3 2 1)" + blending(),
                                           "drags with the left and with the right button",
                                           "the right button selects, the left one does nothing"});
    auto* const client = session.desktop().client().get();
    const std::uint8_t map[] = {3, 2, 1, 4, 5, 6, 7, 8, 9, 10};
    const desktop::Reply<xcb_set_pointer_mapping_reply_t> reply(xcb_set_pointer_mapping_reply(
        client, xcb_set_pointer_mapping(client, sizeof map, map), nullptr));
    ASSERT_TRUE(reply);
    ASSERT_EQ(reply->status, XCB_MAPPING_STATUS_SUCCESS);
    session.openOverlay();
    const std::size_t before = session.mark();
    input.drag({300, 310}, {500, 500});
    EXPECT_TRUE(
        desktop::staysTrue([&] { return session.isOpen(); }, std::chrono::milliseconds(150)));
    input.moveTo({100, 110});
    input.pressButton(3);
    input.moveInSteps({100, 110}, {300, 210});
    input.releaseButton(3);
    expectCapture(before, {100, 110, 200, 100});
}

TEST_P(Buttons, a_shortcut_that_is_held_opens_one_overlay) {
    const TableRow row(TableGroup::input,
                       {"The shortcut held down" + blending(), "the key repeats for half a second",
                        "one overlay, opened once"});
    const std::size_t before = session.mark();
    input.press(key::leftSuper);
    input.press(key::leftShift);
    input.press(key::digit1);
    session.waitUntilOpen();
    // The server repeats a held key after 660 ms, every 40 ms.
    EXPECT_TRUE(desktop::staysTrue(
        [&] { return session.countSince(before, "🟡 HotKey event received!") <= 1; },
        std::chrono::milliseconds(1000)));
    input.release(key::digit1);
    input.release(key::leftShift);
    input.release(key::leftSuper);
    EXPECT_EQ(session.countSince(before, "🟡 HotKey event received! ID: 1"), 1U);
    EXPECT_EQ(session.countSince(before, line::cursorSet), 1U);
    input.drag({100, 110}, {300, 210});
    expectCapture(before, {100, 110, 200, 100});
}

class DragOutside : public testing::TestWithParam<Compositor> {};

INSTANTIATE_TEST_SUITE_P(Desktops, DragOutside,
                         testing::Values(Compositor::none, Compositor::picom), compositorName);

TEST_P(DragOutside, of_every_display_ends_where_the_pointer_stops) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "A server with several displays needs root.";
    }
    const std::string blending = GetParam() == Compositor::none ? "" : ", with a compositor";
    const TableRow row(TableGroup::input,
                       {"A drag that ends outside every display" + blending,
                        "released in a corner of the screen that no display shows",
                        "the display's part of it, the rest black; the overlay closes"});
    Session session(
        {.outputs = {{0, 0, 1280, 1024}, {1280, 0, 800, 600}}, .compositor = GetParam()});
    session.writeSettings(nlohmann::json::object());
    session.start();
    session.openOverlay();
    const std::size_t before = session.mark();
    session.input().drag({1000, 500}, {1900, 1000});
    session.waitForLine(line::regionCopied, before);
    session.waitUntilClosed();
    const Picture taken = session.clipboardPicture().picture;
    // The server keeps the pointer on its displays where it can.
    ASSERT_GE(taken.width, 279);
    ASSERT_GE(taken.height, 99);
    EXPECT_EQ(difference(session.wallpaper().cut(1000, 500, 279, 99), taken.cut(0, 0, 279, 99)),
              "equal");
    for (int x = 280; x < taken.width; ++x) {
        ASSERT_EQ(taken.at(x, 0), 0xff000000U) << x;
    }
}

}  // namespace
}  // namespace journeys
