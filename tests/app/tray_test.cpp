#include <gmock/gmock.h>

#include <QIcon>
#include <QImage>

#include "platform/qt/application_icon.h"
#include "platform/qt/qt_session.h"

namespace {

using qt_tests::QtSession;
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

TEST_F(Tray, without_a_host_the_program_runs_without_an_icon) {
    const auto program = startProgram();
    EXPECT_TRUE(desktop::staysTrue(
        [&] { return program->isRunning() && program->countOf("in the tray") == 0; },
        std::chrono::milliseconds(300)));
    EXPECT_THAT(program->errorLines(), IsEmpty());
}

TEST_F(Tray, an_old_tray_that_comes_after_the_start_is_seen) {
    const auto program = startProgram();
    const auto& client = desktop_.client();
    const xcb_window_t owner = xcb_generate_id(client.get());
    xcb_create_window(client.get(), XCB_COPY_FROM_PARENT, owner, client.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_set_selection_owner(client.get(), owner, client.atom("_NET_SYSTEM_TRAY_S0"),
                            XCB_CURRENT_TIME);
    client.synchronize();
    program->waitForLine("in the tray");
    EXPECT_EQ(program->countOf("in the tray"), 1U);
}

}  // namespace
