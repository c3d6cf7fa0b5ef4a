#include <gmock/gmock.h>

#include <QIcon>
#include <QImage>
#include <algorithm>
#include <optional>
#include <vector>

#include "platform/qt/application_icon.h"
#include "platform/qt/qt_session.h"

namespace {

using qt_tests::QtSession;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(TrayIconImage, has_every_size_with_the_files_and_without_them) {
    QtSession::shared();
    for (const char* directory : {LUMAFRAME_SOURCE_RESOURCES "/icons/hicolor", "/nonexistent"}) {
        const QIcon icon = platform::qt::applicationIcon(directory);
        for (const int size : {16, 22, 24, 32, 48, 64}) {
            const QImage image = icon.pixmap(QSize(size, size)).toImage();
            EXPECT_EQ(image.width(), size) << directory;
            EXPECT_GT(image.pixelColor(size / 2, size / 2).alpha(), 0) << directory;
        }
    }
}

/// A tray of the XEmbed kind: takes icons that ask to be docked into its window.
class OldTray {
  public:
    explicit OldTray(desktop::Desktop& desktop) : client_(desktop.displayName()) {
        window_ = xcb_generate_id(client_.get());
        const std::uint32_t values[] = {1, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY};
        xcb_create_window(client_.get(), XCB_COPY_FROM_PARENT, window_, client_.root(), 0, 0, 24,
                          24, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
        xcb_map_window(client_.get(), window_);
        const xcb_atom_t selection = client_.atom("_NET_SYSTEM_TRAY_S0");
        xcb_set_selection_owner(client_.get(), window_, selection, XCB_CURRENT_TIME);
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = client_.root();
        message.type = client_.atom("MANAGER");
        message.data.data32[1] = selection;
        message.data.data32[2] = window_;
        xcb_send_event(client_.get(), 0, client_.root(), XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                       reinterpret_cast<const char*>(&message));
        client_.synchronize();
    }

    /// Docks the next icon that has asked for it.
    std::optional<xcb_window_t> takeIcon() {
        constexpr std::uint32_t requestDock = 0;
        while (const auto event = client_.pollEvent()) {
            const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(*event);
            if ((event->response_type & 0x7F) == XCB_CLIENT_MESSAGE &&
                message.type == client_.atom("_NET_SYSTEM_TRAY_OPCODE") &&
                message.data.data32[1] == requestDock) {
                const xcb_window_t icon = message.data.data32[2];
                const std::uint32_t size[] = {24, 24};
                xcb_reparent_window(client_.get(), icon, window_, 0, 0);
                xcb_configure_window(client_.get(), icon,
                                     XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size);
                xcb_map_window(client_.get(), icon);
                client_.synchronize();
                return icon;
            }
        }
        return std::nullopt;
    }
    xcb_window_t waitForIcon() {
        std::optional<xcb_window_t> icon;
        desktop::require("An icon that asks to be docked", [&] {
            icon = takeIcon();
            return icon.has_value();
        });
        return *icon;
    }
    /// The icons in the tray.
    [[nodiscard]] std::vector<xcb_window_t> icons() const {
        const desktop::Reply<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(client_.get(), xcb_query_tree(client_.get(), window_), nullptr));
        const xcb_window_t* first = xcb_query_tree_children(tree.get());
        return {first, first + xcb_query_tree_children_length(tree.get())};
    }

  private:
    desktop::XClient client_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
};

class Tray : public testing::Test {
  protected:
    std::unique_ptr<desktop::Process> startProgram() {
        auto program = desktop_.start(
            "menu", {LUMAFRAME_MENU_BAR_PROBE, LUMAFRAME_SOURCE_RESOURCES "/icons/hicolor"});
        program->waitForLine("ready");
        return program;
    }
    std::unique_ptr<desktop::Process> startHost() {
        auto host = desktop_.start("host", {LUMAFRAME_TEST_BUS_PROGRAM, "tray-host"});
        host->waitForLine("ready");
        return host;
    }
    /// The bus name of the icon that registered with the host.
    static std::string itemOf(desktop::Process& host) {
        const std::size_t index = host.waitForLine("item ");
        const std::string line = host.outputLines().at(index);
        const std::string rest = line.substr(5);
        return rest.substr(0, rest.find(' '));
    }

    desktop::Desktop desktop_{{.windowManager = desktop::WindowManager::none}};
};

TEST_F(Tray, a_host_on_the_bus_gets_the_icon_and_its_menu) {
    const auto host = startHost();
    const auto program = startProgram();
    const std::string item = itemOf(*host);
    EXPECT_EQ(desktop_.bus({"menu", item}), "Show Lumaframe\n-\nSettings...\n-\nQuit Lumaframe\n");
    desktop_.bus({"menu-click", item, "Show Lumaframe"});
    program->waitForLine("show main window");
    desktop_.bus({"menu-click", item, "Settings..."});
    program->waitForLine("open permissions");
    desktop_.bus({"menu-click", item, "Quit Lumaframe"});
    EXPECT_EQ(program->waitForExit(), 0);
}

TEST_F(Tray, a_host_that_comes_after_the_start_gets_the_icon) {
    const auto program = startProgram();
    const auto host = startHost();
    EXPECT_FALSE(itemOf(*host).empty());
}

TEST_F(Tray, a_host_that_comes_back_gets_the_icon_again) {
    auto host = startHost();
    const auto program = startProgram();
    itemOf(*host);
    host->end();
    host = startHost();
    EXPECT_FALSE(itemOf(*host).empty());
}

TEST_F(Tray, a_host_gets_the_icon_once) {
    const auto host = startHost();
    const auto program = startProgram();
    itemOf(*host);
    const auto registrations = [&] {
        return std::ranges::count_if(
            host->outputLines(), [](const std::string& line) { return line.starts_with("item "); });
    };
    EXPECT_TRUE(
        desktop::staysTrue([&] { return registrations() == 1; }, std::chrono::milliseconds(300)));
}

TEST_F(Tray, the_icon_has_a_name_for_the_panel_pictures_and_a_menu) {
    const auto host = startHost();
    const auto program = startProgram();
    const std::string item = itemOf(*host);
    const std::string properties = desktop_.bus({"tray-item", item});
    EXPECT_THAT(properties, HasSubstr("Category: ApplicationStatus\n"));
    EXPECT_THAT(properties, HasSubstr("Status: Active\n"));
    EXPECT_THAT(properties, HasSubstr("Title: Lumaframe\n"));
    EXPECT_THAT(properties, HasSubstr("IconName: app.lumaframe.Lumaframe-symbolic\n"));
    EXPECT_THAT(properties, HasSubstr("IconThemePath: " LUMAFRAME_SOURCE_RESOURCES "/icons\n"));
    EXPECT_THAT(properties, HasSubstr("IconPixmap: 16 22 24 32 48 64\n"));
    EXPECT_THAT(properties, HasSubstr("ItemIsMenu: true\n"));
    EXPECT_THAT(properties, HasSubstr("Menu: /MenuBar\n"));
}

TEST_F(Tray, what_no_menu_has_is_refused_and_the_menu_works_on) {
    const auto host = startHost();
    const auto program = startProgram();
    const std::string item = itemOf(*host);
    EXPECT_EQ(desktop_.bus({"menu-nonsense", item}),
              "layout: error\nproperty: error\nevent: error\nabout to show: error\n"
              "event group: 99\ngroup properties: 0\n");
    desktop_.bus({"menu-click", item, "Show Lumaframe"});
    program->waitForLine("show main window");
}

TEST_F(Tray, without_a_tray_the_program_runs_without_an_icon) {
    const auto program = startProgram();
    EXPECT_TRUE(
        desktop::staysTrue([&] { return program->isRunning(); }, std::chrono::milliseconds(300)));
    EXPECT_THAT(program->errorLines(), IsEmpty());
}

TEST_F(Tray, an_old_tray_gets_the_icon_docked) {
    OldTray tray(desktop_);
    const auto program = startProgram();
    EXPECT_NE(tray.waitForIcon(), XCB_WINDOW_NONE);
}

TEST_F(Tray, an_old_tray_that_comes_after_the_start_gets_the_icon_docked) {
    const auto program = startProgram();
    OldTray tray(desktop_);
    EXPECT_NE(tray.waitForIcon(), XCB_WINDOW_NONE);
}

TEST_F(Tray, an_old_tray_gets_nothing_where_a_host_is_on_the_bus) {
    OldTray tray(desktop_);
    const auto host = startHost();
    const auto program = startProgram();
    itemOf(*host);
    EXPECT_TRUE(
        desktop::staysTrue([&] { return !tray.takeIcon(); }, std::chrono::milliseconds(300)));
}

TEST_F(Tray, a_host_takes_the_icon_over_from_an_old_tray_and_gives_it_back_when_it_dies) {
    OldTray tray(desktop_);
    const auto program = startProgram();
    const xcb_window_t docked = tray.waitForIcon();
    for (int round = 0; round < 2; ++round) {
        auto host = startHost();
        const std::string item = itemOf(*host);
        EXPECT_TRUE(desktop::waitUntil([&] { return tray.icons().empty(); }));
        desktop_.bus({"menu-click", item, "Settings..."});
        program->waitForLine("open permissions");
        host->end();
        tray.waitForIcon();
        EXPECT_TRUE(desktop::waitUntil([&] { return tray.icons().size() == 1; }));
    }
    EXPECT_NE(tray.icons().front(), docked);
}

TEST_F(Tray, a_click_on_the_docked_icon_opens_the_menu) {
    OldTray tray(desktop_);
    const auto program = startProgram();
    tray.waitForIcon();
    ASSERT_TRUE(desktop::waitUntil([&] { return tray.icons().size() == 1; }));
    const std::size_t before = desktop_.client().mappedTopLevels().size();
    // The tray is a window of 24 pixels in the corner, and the icon fills it.
    desktop_.input().click({12, 12});
    EXPECT_TRUE(desktop::waitUntil(
        [&] { return desktop_.client().mappedTopLevels().size() == before + 1; }));
}

}  // namespace
