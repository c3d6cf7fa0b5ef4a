#include "desktop/desktop.h"
#include <signal.h>

#include <gtest/gtest.h>

namespace {

TEST(Desktop, a_window_shows_its_pattern_and_receives_the_typed_keys) {
    desktop::Desktop desktop;
    desktop::TestWindow window(desktop.displayName(), {.x = 100, .y = 80});
    window.focus();
    desktop.input().tap(desktop::key::a);
    desktop.input().chord({desktop::key::leftShift, desktop::key::digit1});
    EXPECT_EQ(window.takeKeys(),
              (std::vector<std::uint8_t>{desktop::key::a, desktop::key::leftShift,
                                         desktop::key::digit1}));
}

TEST(Desktop, a_written_picture_reads_back_the_same) {
    desktop::Desktop desktop({.windowManager = desktop::WindowManager::none});
    desktop::TestWindow window(desktop.displayName(), {.width = 33, .height = 21});
    const auto file = desktop.directory() / "picture.png";
    desktop::writePng(file, window.picture());
    const auto png = desktop::decodePng(desktop::readFile(file));
    EXPECT_EQ(desktop::difference(window.picture(), png.picture), "equal");
    EXPECT_EQ(png.chunks.front(), "IHDR");
    EXPECT_EQ(png.chunks.back(), "IEND");
}

TEST(Desktop, several_outputs_stand_where_they_were_asked_for) {
    desktop::Desktop desktop({.outputs = {{0, 0, 1280, 1024}, {1280, 200, 800, 600}},
                              .windowManager = desktop::WindowManager::none});
    const auto screen = desktop::readScreen(desktop.client());
    EXPECT_EQ(screen.width, 2080);
    EXPECT_EQ(screen.height, 1024);
}

TEST(Desktop, keys_reach_a_window_on_a_server_with_several_outputs) {
    desktop::Desktop desktop({.outputs = {{0, 600, 1024, 768}, {100, 0, 800, 600}}});
    desktop::TestWindow window(desktop.displayName(), {.x = 100, .y = 700});
    window.focus();
    desktop.input().chord({desktop::key::leftSuper, desktop::key::leftShift, desktop::key::digit1});
    EXPECT_EQ(window.takeKeys(),
              (std::vector<std::uint8_t>{desktop::key::leftSuper, desktop::key::leftShift,
                                         desktop::key::digit1}));
    EXPECT_EQ(desktop::readScreen(desktop.client()).height, 1368);
    constexpr std::uint32_t superLeft = 0xffeb;
    EXPECT_EQ(desktop.input().keyCodeOf(superLeft), desktop::key::leftSuper);
}

TEST(Desktop, a_compositor_can_come_and_go) {
    desktop::Desktop desktop({.compositor = desktop::Compositor::picom});
    desktop::TestWindow window(desktop.displayName(), {.x = 10, .y = 10});
    desktop.stopCompositor();
    EXPECT_EQ(desktop.client().selectionOwner("_NET_WM_CM_S0"), 0U);
}

TEST(Desktop, the_recorder_and_dunst_take_the_name_of_the_notification_service) {
    for (const auto daemon :
         {desktop::NotificationDaemon::recorder, desktop::NotificationDaemon::dunst}) {
        desktop::Desktop desktop({.notifications = daemon});
        EXPECT_NO_THROW(desktop.bus({"wait-for-name", "org.freedesktop.Notifications"}));
    }
}

TEST(Desktop, the_clipboard_of_another_program_is_read_in_pieces_too) {
    desktop::Desktop desktop;
    const auto text = desktop.directory() / "text";
    desktop::writePng(text, {.width = 900, .height = 900, .pixels = [] {
                                 std::vector<std::uint32_t> noise;
                                 std::uint32_t state = 1;
                                 for (int index = 0; index < 900 * 900; ++index) {
                                     state = state * 1664525U + 1013904223U;
                                     noise.push_back(state | 0xff000000U);
                                 }
                                 return noise;
                             }()});
    auto owner = desktop.start(
        "xclip", {"xclip", "-quiet", "-selection", "clipboard", "-t", "image/png", text.string()});
    desktop::Clipboard clipboard(desktop.displayName());
    ASSERT_TRUE(desktop::waitUntil([&] { return clipboard.isOwned(); }));
    EXPECT_EQ(clipboard.targets(), (std::vector<std::string>{"TARGETS", "image/png"}));
    EXPECT_EQ(clipboard.read("image/png"), desktop::readFile(text));
    EXPECT_TRUE(clipboard.lastReadWasIncremental());
}

TEST(Desktop, everything_it_started_ends_with_it) {
    pid_t pid = 0;
    std::string displayName;
    {
        desktop::Desktop desktop;
        displayName = desktop.displayName();
        auto sleeper = desktop.start("sleep", {"sleep", "1000"});
        pid = sleeper->pid();
        EXPECT_TRUE(sleeper->isRunning());
    }
    EXPECT_NE(::kill(pid, 0), 0);
    EXPECT_THROW(desktop::XClient client(displayName), std::runtime_error);
}

}  // namespace
