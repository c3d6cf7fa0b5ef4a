// The program in a real Wayland session, as a client of its Xwayland.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "journeys/permissions_panel.h"
#include "journeys/session.h"

namespace journeys {
namespace {

using testing::ElementsAre;
using testing::EndsWith;

enum class WaylandDisplay { told, hidden };
enum class Tools { present, missing };

desktop::Environment environmentWith(WaylandDisplay display) {
    return {{"WAYLAND_DISPLAY",
             display == WaylandDisplay::told ? desktop::XServer::waylandDisplay : ""}};
}

/// What `./run` asks before it starts the program: 0 for yes.
std::optional<int> statusOfIsXwayland(desktop::Desktop& desktop, WaylandDisplay display,
                                      Tools tools = Tools::present) {
    desktop::Environment environment = environmentWith(display);
    if (tools == Tools::missing) {
        environment["PATH"] = desktop.home();
    }
    return desktop
        .start("is-xwayland",
               {"/bin/bash", "-c",
                ". " LUMAFRAME_SOURCE_DIRECTORY "/scripts/lib/session.sh; is_xwayland"},
               environment)
        ->waitForExit();
}

class Xwayland : public testing::TestWithParam<WaylandDisplay> {
  protected:
    void SetUp() override {
        if (!desktop::XServer::hasXwayland()) {
            GTEST_SKIP() << "weston or Xwayland is not installed";
        }
        session_.emplace(desktop::DesktopOptions{.server = desktop::ServerKind::xwayland,
                                                 .windowManager = desktop::WindowManager::none,
                                                 .accessibility = desktop::Accessibility::on},
                         desktop::Wallpaper::Motif::none);
        panel_.emplace(*session_);
    }
    /// What is inside the window, which Xwayland itself draws nowhere.
    void keepPicture(const std::string& name) {
        const desktop::XClient& client = session_->desktop().client();
        const xcb_window_t window = find(client.root());
        const desktop::Reply<xcb_get_geometry_reply_t> geometry(
            xcb_get_geometry_reply(client.get(), xcb_get_geometry(client.get(), window), nullptr));
        ASSERT_TRUE(geometry);
        desktop::writePng(
            Session::pictureFile(name),
            desktop::readDrawable(client, window, 0, 0, geometry->width, geometry->height));
    }
    /// The window whose role is "permissions", below `parent`.
    xcb_window_t find(xcb_window_t parent) {
        const desktop::XClient& client = session_->desktop().client();
        const auto role = client.property(parent, "WM_WINDOW_ROLE");
        if (role && std::string(role->begin(), role->end()) == "permissions") {
            return parent;
        }
        const desktop::Reply<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(client.get(), xcb_query_tree(client.get(), parent), nullptr));
        for (int child = 0; tree && child < xcb_query_tree_children_length(tree.get()); ++child) {
            const xcb_window_t found = find(xcb_query_tree_children(tree.get())[child]);
            if (found != XCB_WINDOW_NONE) {
                return found;
            }
        }
        return XCB_WINDOW_NONE;
    }

    std::optional<Session> session_;
    std::optional<PermissionsPanel> panel_;
};

TEST_P(Xwayland, screen_and_keys_are_not_granted_and_the_rows_say_why) {
    session_->writeSettings(nlohmann::json::object());
    session_->startWithoutWaiting(environmentWith(GetParam()));
    session_->require("The rows of the permissions window",
                      [this] { return !panel_->status("Files and Folders").empty(); });
    EXPECT_THAT(panel_->status("Screen Recording"), ElementsAre("Not Granted", "Open Settings"));
    EXPECT_THAT(panel_->status("Accessibility"), ElementsAre("Not Granted", "Open Settings"));
    EXPECT_THAT(panel_->status("Files and Folders"), ElementsAre("Granted"));
    EXPECT_EQ(panel_->action().name, "Refresh Status");
    std::size_t explanations = 0;
    for (const auto& object : session_->desktop().accessibles()) {
        if ((object.name == "Screen Recording" || object.name == "Accessibility") &&
            object.role != "label") {
            EXPECT_THAT(object.description, EndsWith(" In a Wayland session it reaches only X11 "
                                                     "windows: log in to an X11 session."))
                << object.name;
            ++explanations;
        }
    }
    EXPECT_EQ(explanations, 2U);
    keepPicture("permissions-xwayland");
}

TEST_P(Xwayland, the_command_that_starts_the_program_knows_it) {
    EXPECT_EQ(statusOfIsXwayland(session_->desktop(), GetParam()), 0);
}

TEST(XServer, of_its_own_is_no_xwayland_to_the_command_that_starts_the_program) {
    desktop::Desktop desktop({.windowManager = desktop::WindowManager::none});
    EXPECT_EQ(statusOfIsXwayland(desktop, WaylandDisplay::hidden), 1);
    // A name that was left over from another session.
    EXPECT_EQ(statusOfIsXwayland(desktop, WaylandDisplay::told), 1);
}

TEST(XServer, that_no_tool_can_ask_is_an_xwayland_where_the_environment_names_a_wayland_display) {
    desktop::Desktop desktop({.windowManager = desktop::WindowManager::none});
    EXPECT_EQ(statusOfIsXwayland(desktop, WaylandDisplay::told, Tools::missing), 0);
    EXPECT_EQ(statusOfIsXwayland(desktop, WaylandDisplay::hidden, Tools::missing), 1);
}

INSTANTIATE_TEST_SUITE_P(, Xwayland, testing::Values(WaylandDisplay::told, WaylandDisplay::hidden),
                         [](const auto& parameter) {
                             return parameter.param == WaylandDisplay::told
                                        ? "with_the_name_of_the_wayland_display"
                                        : "without_it";
                         });

}  // namespace
}  // namespace journeys
