// The tray icon's menu, driven over D-Bus as a panel does it, and the end of the program.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <set>

#include "journeys/session.h"

namespace journeys {
namespace {

using desktop::Desktop;
using desktop::difference;

class Tray : public testing::Test {
  protected:
    Tray() {
        session.writeSettings(nlohmann::json::object());
        session.start();
        desktop::require("The tray icon's registration",
                         [this] { return !session.desktop().trayItems().empty(); });
        const std::string item = session.desktop().trayItems().front();
        service = item.substr(0, item.find(' '));
    }
    void choose(const std::string& label) { session.desktop().bus({"menu-click", service, label}); }
    Picture capture() {
        session.openOverlay();
        const std::size_t before = session.mark();
        session.input().drag({200, 150}, {500, 350});
        session.waitForLine(line::saved, before);
        session.waitUntilClosed();
        return session.wallpaper().cut(200, 150, 300, 200);
    }

    Session session{{.tray = desktop::Tray::host}};
    std::string service;
};

TEST_F(Tray, the_menu_holds_the_three_items_with_separators_between) {
    EXPECT_EQ(session.desktop().bus({"menu", service}),
              "Show Lumaframe\n-\nSettings...\n-\nQuit Lumaframe\n");
}

/// The methods of every object of the program, without those that each object has.
std::set<std::string> methodsOf(Desktop& desktop) {
    auto asked =
        desktop.start("introspection", {"gdbus", "introspect", "--session", "--recurse", "--dest",
                                        "app.lumaframe.Lumaframe", "--object-path", "/"});
    EXPECT_EQ(asked->waitForExit(), 0);
    std::set<std::string> methods;
    std::string interface;
    bool isMethods = false;
    for (const std::string& text : asked->outputLines()) {
        const std::string line = text.substr(std::min(text.find_first_not_of(' '), text.size()));
        if (line.starts_with("interface ")) {
            interface = line.substr(10, line.find(' ', 10) - 10);
        } else if (line.ends_with(':')) {
            isMethods = line == "methods:";
        }
        // Annotations and further arguments have lines of their own.
        const std::size_t length = std::min(line.find('('), line.size());
        if (isMethods && length < line.size() && !interface.starts_with("org.freedesktop.DBus.") &&
            std::all_of(line.begin(), line.begin() + static_cast<std::ptrdiff_t>(length),
                        [](unsigned char letter) { return std::isalnum(letter) != 0; })) {
            methods.insert(interface + "." + line.substr(0, length));
        }
        isMethods = isMethods && !line.ends_with("};");
    }
    return methods;
}

TEST_F(Tray, nothing_else_can_be_asked_for_on_the_bus) {
    const std::string application = "org.freedesktop.Application.";
    const std::string item = "org.kde.StatusNotifierItem.";
    const std::string menu = "com.canonical.dbusmenu.";
    const std::set<std::string> all{application + "Activate",   application + "ActivateAction",
                                    application + "Open",       item + "Activate",
                                    item + "ContextMenu",       item + "Scroll",
                                    item + "SecondaryActivate", menu + "AboutToShow",
                                    menu + "AboutToShowGroup",  menu + "Event",
                                    menu + "EventGroup",        menu + "GetGroupProperties",
                                    menu + "GetLayout",         menu + "GetProperty"};
    EXPECT_EQ(methodsOf(session.desktop()), all);
}

TEST_F(Tray, show_lumaframe_opens_the_settings_window_once) {
    choose("Show Lumaframe");
    std::optional<xcb_window_t> window;
    ASSERT_TRUE(desktop::waitUntil([&] {
        window = session.windowWithRole("main");
        return window && session.activeWindow() == *window;
    }));
    desktop::TestWindow other(session.desktop().displayName(), {.x = 50, .y = 60});
    ASSERT_TRUE(desktop::waitUntil([&] { return session.activeWindow() == other.id(); }));
    choose("Show Lumaframe");
    EXPECT_TRUE(desktop::waitUntil([&] { return session.activeWindow() == *window; }));
    session.closeWindow(*window);
    EXPECT_FALSE(session.windowWithRole("main").has_value());
}

TEST_F(Tray, settings_opens_the_permissions_window) {
    choose("Settings...");
    EXPECT_TRUE(desktop::waitUntil([&] {
        const auto window = session.windowWithRole("permissions");
        return window && session.activeWindow() == *window;
    }));
    EXPECT_FALSE(session.windowWithRole("main").has_value());
}

TEST_F(Tray, quit_exits_with_0_and_the_picture_stays_with_a_clipboard_manager) {
    const auto manager =
        session.desktop().startClipboardManager(Desktop::ClipboardManager::keeping);
    const Picture expected = capture();
    choose("Quit Lumaframe");
    EXPECT_EQ(session.program().waitForExit(), 0);
    EXPECT_EQ(manager->outputLines().size(), 2U) << "ready, then one picture saved";
    EXPECT_EQ(difference(expected, session.clipboardPicture().picture), "equal");
    EXPECT_TRUE(session.program().errorLines().empty());
}

TEST_F(Tray, quit_without_a_clipboard_manager_exits_with_0_at_once) {
    capture();
    const auto asked = std::chrono::steady_clock::now();
    choose("Quit Lumaframe");
    EXPECT_EQ(session.program().waitForExit(), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - asked, std::chrono::seconds(3));
    EXPECT_TRUE(desktop::waitUntil([&] { return !session.clipboard().isOwned(); }));
}

TEST_F(Tray, quit_waits_a_bounded_time_for_a_clipboard_manager_that_does_not_answer) {
    const auto manager = session.desktop().startClipboardManager(Desktop::ClipboardManager::silent);
    capture();
    const auto asked = std::chrono::steady_clock::now();
    choose("Quit Lumaframe");
    EXPECT_EQ(session.program().waitForExit(), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - asked, std::chrono::seconds(4));
}

TEST_F(Tray, quit_gives_the_shortcuts_back) {
    choose("Quit Lumaframe");
    EXPECT_EQ(session.program().waitForExit(), 0);
    auto& client = session.desktop().client();
    const desktop::Reply<xcb_generic_error_t> error(xcb_request_check(
        client.get(),
        xcb_grab_key_checked(client.get(), 0, client.root(), XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT,
                             desktop::key::digit1, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
    EXPECT_EQ(error, nullptr);
}

}  // namespace
}  // namespace journeys
