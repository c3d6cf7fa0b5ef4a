// In which order the server hears of the keyboard and of the windows when the overlay opens.
#include <gtest/gtest.h>

#include "platform/x11/private_keyboard.h"
#include "platform/x11/surface_rig.h"

namespace platform::x11 {
namespace {

using surface_rig::RecordingInput;
using surface_rig::Rig;
using test::OtherProgram;

desktop::DesktopOptions bare() {
    desktop::DesktopOptions options;
    options.outputs = {{0, 0, 800, 600}};
    options.windowManager = desktop::WindowManager::none;
    return options;
}

TEST(OpeningOrder, an_anticipated_tap_has_the_keyboard_already) {
    test::PrivateKeyboard keyboard;
    OtherProgram other(keyboard.displayName());
    keyboard.ports().anticipateTap();
    EXPECT_EQ(other.grabKeyboard(), OtherProgram::Answer::refused);

    std::vector<std::uint32_t> keys;
    auto tap = keyboard.tap().create([&](const overlay::TapEvent& event) {
        keys.push_back(event.keyCode);
        return overlay::TapVerdict::swallow;
    });
    ASSERT_TRUE(tap.hasValue());
    keyboard.hands().tap(desktop::key::space);
    keyboard.settle();
    EXPECT_EQ(keys, std::vector<std::uint32_t>{49});

    tap.value().reset();
    keyboard.settle();
    EXPECT_EQ(other.grabKeyboard(), OtherProgram::Answer::granted);
}

TEST(OpeningOrder, a_tap_that_another_program_keeps_from_the_keyboard_is_refused_all_the_same) {
    test::PrivateKeyboard keyboard;
    OtherProgram other(keyboard.displayName());
    ASSERT_EQ(other.grabKeyboard(), OtherProgram::Answer::granted);
    keyboard.ports().anticipateTap();
    EXPECT_FALSE(
        keyboard.tap().create([](const auto&) { return overlay::TapVerdict::pass; }).hasValue());
    other.ungrabKeyboard();
    EXPECT_TRUE(
        keyboard.tap().create([](const auto&) { return overlay::TapVerdict::pass; }).hasValue());
}

TEST(OpeningOrder, a_window_is_announced_before_the_server_hears_of_it) {
    Rig rig(bare());
    std::vector<std::size_t> shown;
    rig.factory->beforeShowing([&] {
        (void)rig.connection->serverTime();
        shown.push_back(rig.overlays().size());
    });
    RecordingInput input;
    const auto surface = rig.open(input);
    EXPECT_EQ(rig.overlays().size(), 1U);
    surface->makeKeyAndOrderFront();
    rig.settle();
    EXPECT_EQ(shown, std::vector<std::size_t>{0});
}

TEST(OpeningOrder, a_window_is_shown_before_the_loop_sleeps_at_the_latest) {
    Rig rig(bare());
    RecordingInput input;
    const auto surface = rig.factory->create(rig.displays.screens().front(), {}, input);
    rig.settle();
    surface->makeKeyAndOrderFront();
    rig.connection->dispatchPendingEvents();
    EXPECT_TRUE(desktop::waitUntil([&] { return rig.overlays().size() == 1; }));
}

}  // namespace
}  // namespace platform::x11
