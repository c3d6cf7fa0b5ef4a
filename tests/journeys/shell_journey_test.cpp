// The program around the capture: its two windows, their commands, the task bar, second starts.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "journeys/session.h"

namespace journeys {
namespace {

class Shell : public testing::Test {
  protected:
    /// The window with this role, when it is the active one.
    xcb_window_t waitForActive(const std::string& role) {
        std::optional<xcb_window_t> window;
        session.require("The active window " + role, [&] {
            window = session.windowWithRole(role);
            return window && session.activeWindow() == *window;
        });
        return *window;
    }
    std::vector<std::uint32_t> numbers(xcb_window_t window, const std::string& property) {
        const auto bytes = session.desktop().client().property(window, property);
        std::vector<std::uint32_t> values(bytes ? bytes->size() / 4 : 0);
        if (!values.empty()) {
            std::memcpy(values.data(), bytes->data(), values.size() * 4);
        }
        return values;
    }
    bool isInState(xcb_window_t window, const char* state) {
        const auto states = numbers(window, "_NET_WM_STATE");
        return std::ranges::find(states, session.desktop().client().atom(state)) != states.end();
    }
    std::size_t windowsWithRole(const std::string& role) {
        std::size_t count = 0;
        for (const std::uint32_t window :
             numbers(session.desktop().client().root(), "_NET_CLIENT_LIST")) {
            const auto bytes = session.desktop().client().property(window, "WM_WINDOW_ROLE");
            count += bytes && std::string(bytes->begin(), bytes->end()) == role ? 1 : 0;
        }
        return count;
    }
    void startAgain() {
        auto second = session.startSecond();
        EXPECT_EQ(second->waitForExit(), 0);
    }

    Session session;
};

TEST_F(Shell, control_comma_in_the_active_window_opens_the_permissions_window) {
    session.start(SettingsWindow::leftOpen);
    waitForActive("main");
    session.input().chord({desktop::key::leftControl, desktop::key::comma});
    waitForActive("permissions");
    EXPECT_EQ(windowsWithRole("main"), 1U);
}

TEST_F(Shell, the_permissions_window_is_one_and_comes_to_the_front_again) {
    session.start(SettingsWindow::leftOpen);
    const xcb_window_t main = waitForActive("main");
    session.input().chord({desktop::key::leftControl, desktop::key::comma});
    const xcb_window_t permissions = waitForActive("permissions");
    startAgain();
    ASSERT_EQ(waitForActive("main"), main);
    session.input().chord({desktop::key::leftControl, desktop::key::comma});
    EXPECT_EQ(waitForActive("permissions"), permissions);
    EXPECT_EQ(windowsWithRole("permissions"), 1U);
}

TEST_F(Shell, the_permissions_window_opens_in_the_centre_of_the_screen) {
    session.start(SettingsWindow::leftOpen);
    waitForActive("main");
    session.input().chord({desktop::key::leftControl, desktop::key::comma});
    const xcb_window_t window = waitForActive("permissions");
    auto& client = session.desktop().client();
    const desktop::Reply<xcb_get_geometry_reply_t> size(
        xcb_get_geometry_reply(client.get(), xcb_get_geometry(client.get(), window), nullptr));
    const desktop::Reply<xcb_translate_coordinates_reply_t> origin(xcb_translate_coordinates_reply(
        client.get(), xcb_translate_coordinates(client.get(), window, client.root(), 0, 0),
        nullptr));
    ASSERT_TRUE(size && origin);
    // The decoration, which the window manager adds at the top, is not known beforehand.
    EXPECT_NEAR(origin->dst_x + size->width / 2, client.screen().width_in_pixels / 2, 4);
    EXPECT_NEAR(origin->dst_y + size->height / 2, client.screen().height_in_pixels / 2, 30);
}

TEST_F(Shell, control_q_in_the_active_window_ends_the_program_with_0) {
    session.start(SettingsWindow::leftOpen);
    waitForActive("main");
    session.input().chord({desktop::key::leftControl, desktop::key::q});
    EXPECT_EQ(session.program().waitForExit(), 0);
    EXPECT_THAT(session.program().errorLines(), testing::IsEmpty());
}

TEST_F(Shell, the_windows_are_in_the_task_bar_by_default) {
    session.start(SettingsWindow::leftOpen);
    const xcb_window_t main = waitForActive("main");
    EXPECT_FALSE(isInState(main, "_NET_WM_STATE_SKIP_TASKBAR"));
    EXPECT_FALSE(isInState(main, "_NET_WM_STATE_SKIP_PAGER"));
}

TEST_F(Shell, with_the_hidden_dock_icon_both_windows_leave_the_task_bar_and_the_switcher) {
    session.writeSettings({{"hideDockIcon", true}});
    session.start(SettingsWindow::leftOpen);
    const xcb_window_t main = waitForActive("main");
    session.input().chord({desktop::key::leftControl, desktop::key::comma});
    for (const xcb_window_t window : {main, waitForActive("permissions")}) {
        EXPECT_TRUE(
            desktop::waitUntil([&] { return isInState(window, "_NET_WM_STATE_SKIP_TASKBAR"); }));
        EXPECT_TRUE(
            desktop::waitUntil([&] { return isInState(window, "_NET_WM_STATE_SKIP_PAGER"); }));
    }
}

TEST_F(Shell, a_settings_window_that_another_program_destroyed_is_opened_again) {
    session.start(SettingsWindow::leftOpen);
    const xcb_window_t first = waitForActive("main");
    xcb_destroy_window(session.desktop().client().get(), first);
    session.desktop().client().synchronize();
    session.require("The window's end", [&] { return !session.windowWithRole("main"); });
    startAgain();
    const xcb_window_t opened = waitForActive("main");
    // A window that works: it can be closed, and opened again.
    session.closeWindow(opened);
    startAgain();
    waitForActive("main");
    EXPECT_TRUE(session.program().isRunning());
}

}  // namespace
}  // namespace journeys
