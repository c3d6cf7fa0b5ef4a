// What the program stands on breaks while it runs, or was never whole.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <thread>

#include "base/clock.h"
#include "journeys/private_mounts.h"
#include "journeys/session.h"

namespace journeys {
namespace {

namespace key = desktop::key;
using testing::IsEmpty;

/// A capture without a look at the log, which may have no reader: opened, dragged, on the
/// clipboard.
void expectAPicture(Session& session, const Area& area = {200, 150, 300, 200}) {
    const Picture expected = session.screen(area);
    session.require("The opening of the overlay", [&] {
        session.pressScreenshotShortcut();
        return desktop::waitUntil([&] { return session.isOpen(); }, std::chrono::seconds(2));
    });
    session.waitUntilOpen();
    session.input().drag({area.x, area.y}, {area.x + area.width, area.y + area.height});
    session.waitUntilClosed();
    session.require("The picture on the clipboard", [&] {
        const auto bytes = session.clipboard().read("image/png");
        return bytes && desktop::decodePng(*bytes).picture == expected;
    });
}

/// Starts the program, waits for its settings window alone, and closes that.
void startUnheard(Session& session, const std::function<void()>& beforeExec) {
    session.writeSettings(nlohmann::json::object());
    session.startWithoutWaiting({}, beforeExec);
    session.require("The settings window",
                    [&] { return session.windowWithRole("main").has_value(); });
    session.closeWindow(*session.windowWithRole("main"));
    session.require("The empty desktop", [&] {
        return session.screen({0, 0, 1280, 800}) == session.wallpaper();
    });
}

/// A file of the time zone database for a zone that is always so far from UTC, named "LMT".
std::string zoneFile(int hoursFromUtc) {
    const auto bigEndian = [](std::int32_t number) {
        std::string bytes;
        for (int shift = 24; shift >= 0; shift -= 8) {
            bytes += static_cast<char>(static_cast<std::uint32_t>(number) >> shift & 0xffU);
        }
        return bytes;
    };
    std::string file = "TZif" + std::string(16, '\0');
    // Of the six tables only the last two have entries: one kind of time, four letters of names.
    for (const int count : {0, 0, 0, 0, 1, 4}) {
        file += bigEndian(count);
    }
    return file + bigEndian(hoursFromUtc * 3600) + std::string(2, '\0') + std::string("LMT\0", 4);
}

class Faults : public testing::Test {
  protected:
    void start(const desktop::Environment& environment = {}) {
        session.writeSettings(nlohmann::json::object());
        session.start(SettingsWindow::closed, environment);
    }
    Session session;
};

TEST_F(Faults, an_x_server_that_goes_is_one_sentence_and_the_end) {
    start();
    session.desktop().server().stop();
    EXPECT_EQ(session.program().waitForExit(), 1);
    EXPECT_EQ(session.program().errorLines().size(), 1U)
        << testing::PrintToString(session.program().errorLines());
}

TEST_F(Faults, an_x_server_that_goes_while_the_overlay_is_open_is_the_same) {
    start();
    session.openOverlay();
    session.input().moveTo({300, 300});
    session.input().pressButton();
    session.desktop().server().stop();
    EXPECT_EQ(session.program().waitForExit(), 1);
    EXPECT_EQ(session.program().errorLines().size(), 1U)
        << testing::PrintToString(session.program().errorLines());
}

TEST_F(Faults, an_x_server_that_goes_after_its_keyboard_has_changed_is_the_same) {
    start();
    auto& program = session.program();
    program.signal(SIGSTOP);
    auto layout = session.desktop().start("setxkbmap", {"setxkbmap", "de"});
    ASSERT_EQ(layout->waitForExit(), 0);
    const pid_t server = session.desktop().server().processId();
    ::kill(server, SIGSTOP);
    program.signal(SIGCONT);
    // It asks the server for the keyboard, and gets no answer.
    EXPECT_TRUE(
        desktop::staysTrue([&] { return program.isRunning(); }, std::chrono::milliseconds(150)));
    ::kill(server, SIGKILL);
    EXPECT_EQ(program.waitForExit(), 1);
    EXPECT_THAT(program.errorLines(),
                testing::ElementsAre("The X server has ended the connection."));
}

TEST_F(Faults, a_session_bus_that_goes_costs_no_capture) {
    start();
    session.desktop().stopBus();
    expectAPicture(session);
    expectAPicture(session, {600, 300, 120, 90});
    EXPECT_THAT(session.program().errorLines(), IsEmpty());
}

TEST_F(Faults, a_locale_that_does_not_exist_or_has_no_utf8_changes_no_name) {
    const auto folder = session.desktop().home() / "Bücher 写真";
    std::filesystem::create_directories(folder);
    session.writeSettings({{"screenshotSavePath", folder.string()}});
    session.start(SettingsWindow::closed, {{"LANG", "xx_YY.ISO-8859-1"}, {"LC_ALL", "POSIX"}});
    const std::size_t before = session.mark();
    expectAPicture(session);
    const std::filesystem::path saved = session.waitForLine(line::saved, before);
    EXPECT_EQ(saved.parent_path(), folder);
    EXPECT_TRUE(std::filesystem::exists(saved));
}

TEST_F(Faults, without_a_home_and_with_relative_directories_pictures_reach_the_clipboard) {
    session.startWithoutWaiting({{"HOME", ""},
                                 {"XDG_CONFIG_HOME", "config"},
                                 {"XDG_DATA_HOME", "../data"},
                                 {"XDG_CACHE_HOME", "."},
                                 {"XDG_RUNTIME_DIR", "runtime/\x01"}});
    session.program().waitForLine(line::handlerInstalled);
    // Beside the windows that open at such a start.
    expectAPicture(session, {1000, 720, 200, 60});
    EXPECT_TRUE(session.program().isRunning());
}

TEST_F(Faults, with_directories_that_can_be_none_pictures_reach_the_clipboard) {
    session.startWithoutWaiting({{"HOME", "/dev/null"},
                                 {"XDG_CONFIG_HOME", "/dev/null/config"},
                                 {"XDG_CONFIG_DIRS", "::/proc/self/mem:relative:/dev/full:"},
                                 {"XDG_DATA_HOME", "/" + std::string(5000, 'a')},
                                 {"XDG_DATA_DIRS", std::string(2000, ':') + "/proc/self/fd"},
                                 {"XDG_CACHE_HOME", "/proc/self"},
                                 {"XDG_STATE_HOME", "/\xff\xfe\n"},
                                 {"XDG_RUNTIME_DIR", "/dev/full"}});
    session.program().waitForLine(line::handlerInstalled);
    // Beside the windows that open at such a start.
    expectAPicture(session, {1000, 720, 200, 60});
    EXPECT_TRUE(session.program().isRunning());
}

TEST_F(Faults, a_log_that_nobody_reads_holds_nothing_up) {
    int ends[2];
    ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    ASSERT_GT(::fcntl(ends[1], F_SETPIPE_SZ, 4096), 0);
    startUnheard(session, [output = ends[1]] { ::dup2(output, STDOUT_FILENO); });
    for (int round = 0; round < 3; ++round) {
        expectAPicture(session, {200 + 40 * round, 150, 300, 200});
    }
    char text[8192];
    ASSERT_GT(::read(ends[0], text, sizeof text), 0);
    expectAPicture(session, {500, 150, 300, 200});
    ::close(ends[0]);
    expectAPicture(session, {500, 350, 300, 200});
    ::close(ends[1]);
}

TEST_F(Faults, a_start_without_standard_streams_is_a_start) {
    startUnheard(session, [] {
        ::close(STDIN_FILENO);
        ::close(STDOUT_FILENO);
        ::close(STDERR_FILENO);
    });
    expectAPicture(session);
    const auto file =
        std::filesystem::path("/proc") / std::to_string(session.program().pid()) / "fd/1";
    EXPECT_EQ(std::filesystem::read_symlink(file), "/dev/null");
}

TEST_F(Faults, a_full_disk_under_the_log_holds_nothing_up) {
    startUnheard(session, [] { ::dup2(::open("/dev/full", O_WRONLY), STDOUT_FILENO); });
    expectAPicture(session);
}

TEST_F(Faults, a_time_zone_that_changes_holds_from_the_next_file_name_on) {
    if (!canMount() || std::getenv("TZ") != nullptr) {
        GTEST_SKIP() << "Needs the right to mount, and a time zone that is the system's.";
    }
    const auto zone = session.desktop().home() / "zone";
    session.leftOnDisk().expect(zone);
    // In place, as a mounted file has to be changed.
    const auto moveTo = [&](int hoursFromUtc) {
        std::ofstream(zone, std::ios::binary | std::ios::trunc) << zoneFile(hoursFromUtc);
        // The C library looks at the file again when its second is another.
        std::filesystem::last_write_time(
            zone, std::filesystem::last_write_time(zone) + std::chrono::seconds(hoursFromUtc));
    };
    const auto dayAndHour = [](int hoursFromUtc) {
        const std::time_t then = std::time(nullptr) + hoursFromUtc * 3600;
        return base::fileNameDate(*std::gmtime(&then)).substr(0, 16);
    };
    const auto savedName = [&] {
        const std::size_t before = session.mark();
        expectAPicture(session);
        return std::filesystem::path(session.waitForLine(line::saved, before)).filename().string();
    };
    // An hour may end in between.
    const auto expectHour = [&](int hoursFromUtc) {
        const std::string earliest = dayAndHour(hoursFromUtc);
        const std::string name = savedName();
        EXPECT_TRUE(name.starts_with("Screenshot " + earliest) ||
                    name.starts_with("Screenshot " + dayAndHour(hoursFromUtc)))
            << name << " is not of " << earliest;
    };
    moveTo(14);
    session.writeSettings(nlohmann::json::object());
    session.start(SettingsWindow::closed, {}, mountedFile(zone, "/etc/localtime"));
    expectHour(14);
    moveTo(-11);
    expectHour(-11);
}

TEST_F(Faults, a_window_manager_that_is_replaced_is_followed) {
    start();
    const desktop::XClient& client = session.desktop().client();
    const auto manager = [&] { return client.property(client.root(), "_NET_SUPPORTING_WM_CHECK"); };
    const auto first = manager();
    auto other =
        session.desktop().startOther("openbox-2", {"openbox", "--sm-disable", "--replace"});
    session.require("The other window manager",
                    [&] { return manager().has_value() && manager() != first; });
    desktop::awaitWindowManager(client);
    desktop::TestWindow window(session.desktop().displayName(), {.x = 300, .y = 300});
    window.focus();
    session.waitUntilStill();
    expectAPicture(session, {320, 320, 200, 100});
}

TEST_F(Faults, a_compositor_killed_in_a_drag_and_started_again_costs_at_most_that_picture) {
    start();
    session.desktop().startCompositor(desktop::Compositor::picom);
    session.openOverlay();
    session.input().moveTo({300, 300});
    session.input().pressButton();
    session.input().moveInSteps({300, 300}, {500, 450});
    session.desktop().compositor().signal(SIGKILL);
    session.desktop().stopCompositor();
    session.input().releaseButton();
    session.cancelOverlay();
    session.require("The screen without a compositor", [&] {
        return session.screen({0, 0, 1280, 800}) == session.wallpaper();
    });
    expectAPicture(session);
    session.desktop().startCompositor(desktop::Compositor::picom);
    expectAPicture(session, {600, 300, 120, 90});
}

TEST_F(Faults, a_compositor_killed_and_back_within_a_drag_costs_nothing) {
    start();
    const Area area{300, 300, 220, 170};
    const Picture expected = session.screen(area);
    session.desktop().startCompositor(desktop::Compositor::picom);
    session.openOverlay();
    const std::size_t before = session.mark();
    session.input().moveTo({300, 300});
    session.input().pressButton();
    session.input().moveInSteps({300, 300}, {500, 450});
    session.desktop().compositor().signal(SIGKILL);
    session.desktop().stopCompositor();
    session.desktop().startCompositor(desktop::Compositor::picom);
    session.input().moveInSteps({500, 450}, {520, 470});
    session.input().releaseButton();
    session.waitUntilClosed();
    session.waitForLine(line::regionCopied, before);
    const auto bytes = session.clipboard().read("image/png");
    ASSERT_TRUE(bytes);
    EXPECT_TRUE(desktop::decodePng(*bytes).picture == expected);
    expectAPicture(session, {600, 300, 120, 90});
}

TEST_F(Faults, above_three_hundred_windows_the_one_below_the_pointer_is_taken) {
    start();
    desktop::XClient client(session.desktop().displayName());
    for (int number = 0; number < 300; ++number) {
        const xcb_window_t window = xcb_generate_id(client.get());
        xcb_create_window(client.get(), XCB_COPY_FROM_PARENT, window, client.root(), 0, 0, 120, 100,
                          0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_map_window(client.get(), window);
    }
    session.require("The management of 300 windows", [&] {
        const auto list = client.property(client.root(), "_NET_CLIENT_LIST");
        return list && list->size() == 300 * sizeof(xcb_window_t);
    });
    desktop::TestWindow window(session.desktop().displayName(), {.x = 600, .y = 300});
    window.focus();
    session.waitUntilStill();
    session.openOverlay();
    const std::size_t before = session.mark();
    session.input().moveTo({700, 400});
    session.input().tap(key::space);
    session.waitForLine(line::toggled, before);
    session.input().click({702, 402});
    EXPECT_EQ(session.waitForLine(line::windowCopied, before), std::to_string(window.id()));
    session.waitUntilClosed();
}

TEST_F(Faults, windows_whose_properties_change_all_the_time_stop_no_capture) {
    start();
    desktop::TestWindow window(session.desktop().displayName(), {.x = 600, .y = 400});
    window.focus();
    session.waitUntilStill();
    std::atomic<bool> isOver = false;
    std::thread restless([&] {
        desktop::XClient client(session.desktop().displayName());
        for (std::uint32_t turn = 0; !isOver; ++turn) {
            const std::string title(turn % 5000, static_cast<char>(turn % 256));
            for (const char* name : {"_NET_WM_NAME", "WM_NAME", "WM_CLASS", "_NET_WM_PID",
                                     "_NET_WM_WINDOW_TYPE", "_GTK_FRAME_EXTENTS"}) {
                xcb_change_property(client.get(), XCB_PROP_MODE_REPLACE, window.id(),
                                    client.atom(name), XCB_ATOM_STRING, 8,
                                    static_cast<std::uint32_t>(title.size()), title.data());
            }
            client.synchronize();
        }
    });
    for (int round = 0; round < 5; ++round) {
        session.openOverlay();
        const std::size_t before = session.mark();
        session.input().moveTo({700, 500});
        session.input().tap(key::space);
        session.waitForLine(line::toggled, before);
        session.cancelOverlay();
    }
    isOver = true;
    restless.join();
    expectAPicture(session);
}

TEST(WideDisplay, of_one_row_opens_and_closes_an_overlay) {
    Session session({.outputs = {{0, 0, 32767, 1}}, .windowManager = desktop::WindowManager::none});
    session.writeSettings(nlohmann::json::object());
    session.start(SettingsWindow::leftOpen);
    session.openOverlay();
    session.cancelOverlay();
    EXPECT_TRUE(session.program().isRunning());
}

}  // namespace
}  // namespace journeys
