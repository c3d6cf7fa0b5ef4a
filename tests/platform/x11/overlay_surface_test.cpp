#include <gtest/gtest.h>

#include "desktop/poor_server.h"
#include "platform/x11/surface_rig.h"

using desktop::DesktopOptions;
using overlay::optionModifierFlag;
using surface_rig::RecordingInput;
using surface_rig::Rig;

namespace {

const desktop::Output display{0, 0, 800, 600};

DesktopOptions bare() {
    DesktopOptions options;
    options.outputs = {display};
    options.windowManager = desktop::WindowManager::none;
    return options;
}

DesktopOptions withOpenbox() {
    DesktopOptions options;
    options.outputs = {display};
    return options;
}

xcb_window_t makeWindow(const desktop::XClient& client, int x, int y, bool isMenu = false) {
    const xcb_window_t window = xcb_generate_id(client.get());
    const std::uint32_t values[] = {0xFF8800, isMenu ? 1U : 0U};
    xcb_create_window(client.get(), XCB_COPY_FROM_PARENT, window, client.root(),
                      static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 200, 150, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values);
    xcb_map_window(client.get(), window);
    client.synchronize();
    return window;
}

}  // namespace

TEST(OverlaySurface, the_window_covers_exactly_its_display_and_is_none_of_the_window_managers) {
    Rig rig(withOpenbox());
    RecordingInput input;
    const auto surface = rig.open(input);
    const auto windows = rig.overlays();
    ASSERT_EQ(windows.size(), 1U);
    EXPECT_EQ(rig.desktop.client().mappedTopLevels().back(), windows[0]);
    EXPECT_EQ(rig.desktop.client().value(windows[0], "_NET_WM_WINDOW_TYPE"),
              rig.desktop.client().atom("_NET_WM_WINDOW_TYPE_DND"));
    EXPECT_FALSE(rig.desktop.client().property(windows[0], "_NET_WM_BYPASS_COMPOSITOR"));
}

TEST(OverlaySurface, without_memory_for_the_snapshot_asks_once_to_be_ended) {
    // So large that the server's memory for a picture of it always comes from the system.
    DesktopOptions options = bare();
    options.outputs = {{0, 0, 4096, 2304}};
    Rig rig(options);
    RecordingInput input;
    {
        const desktop::PoorServer poor(rig.desktop.server());
        const auto surface = rig.open(input);
        EXPECT_TRUE(rig.overlays().empty());
        ASSERT_EQ(input.reports.size(), 1U);
        EXPECT_EQ(input.reports.front().what, "cancel");
    }
    input.reports.clear();
    const auto surface = rig.open(input);
    EXPECT_EQ(rig.overlays().size(), 1U);
    EXPECT_FALSE(input.has("cancel"));
}

TEST(OverlaySurface, nothing_is_painted_before_the_first_drawing) {
    DesktopOptions options = bare();
    options.compositor = desktop::Compositor::picom;
    Rig rig(options);
    RecordingInput input;
    const auto surface = rig.open(input);
    ASSERT_EQ(rig.overlays().size(), 1U);
    const auto pixels = surface_rig::readWindow(rig.desktop.client(), rig.overlays()[0], 800, 600);
    EXPECT_EQ(pixels, std::vector<std::uint32_t>(800 * 600, 0));
}

TEST(OverlaySurface, the_font_is_opened_as_soon_as_the_window_is_up_and_not_by_the_first_drag) {
    Rig rig(bare());
    RecordingInput input;
    const auto surface = rig.factory->create(rig.displays.screens().at(0), {}, input);
    EXPECT_EQ(rig.rasterizer.rasterized, 0);
    surface->makeKeyAndOrderFront();
    EXPECT_EQ(rig.rasterizer.rasterized, 0);
    EXPECT_TRUE(rig.waitUntil([&] { return rig.rasterizer.rasterized == 1; }));
}

TEST(OverlaySurface, a_frozen_overlay_shows_the_display_as_it_was) {
    Rig rig(bare());
    makeWindow(rig.desktop.client(), 100, 100);
    const auto before = desktop::readScreen(rig.desktop.client());
    ASSERT_EQ(before.at(150, 150) & 0xFFFFFFU, 0xFF8800U);
    RecordingInput input;
    const auto surface = rig.open(input);
    ASSERT_EQ(rig.overlays().size(), 1U);
    const auto after = desktop::readScreen(rig.desktop.client());
    EXPECT_TRUE(before == after) << desktop::difference(before, after);
}

TEST(OverlaySurface, a_drag_is_reported_in_view_space_and_goes_on_outside_of_the_display) {
    DesktopOptions options = bare();
    options.outputs = {display, {800, 0, 640, 480}};
    Rig rig(options, 2.0);
    RecordingInput input;
    const auto surface = rig.open(input);
    auto& hands = rig.desktop.input();
    hands.moveTo({100, 200});
    ASSERT_TRUE(rig.waitUntil([&] { return input.has("moved"); }));
    EXPECT_EQ(input.last("moved")->location, (base::Point{50, 200}));
    hands.pressButton();
    hands.moveTo({1000, 300});
    ASSERT_TRUE(rig.waitUntil([&] { return input.has("dragged"); }));
    EXPECT_EQ(input.last("down")->location, (base::Point{50, 200}));
    EXPECT_EQ(input.last("dragged")->location, (base::Point{500, 150}));
    hands.releaseButton();
    ASSERT_TRUE(rig.waitUntil([&] { return input.has("up"); }));
    EXPECT_EQ(input.last("up")->location, (base::Point{500, 150}));
    hands.moveTo({900, 20});
    hands.moveTo({10, 20});
    ASSERT_TRUE(rig.waitUntil([&] {
        return input.last("moved")->location == base::Point{5, 290};
    }));
}

TEST(OverlaySurface, the_last_pixel_column_and_row_count_as_the_far_edge) {
    Rig rig(bare(), 1.25);
    RecordingInput input;
    const auto surface = rig.open(input);
    rig.desktop.input().moveTo({799, 599});
    ASSERT_TRUE(rig.waitUntil([&] { return input.has("moved"); }));
    EXPECT_EQ(input.last("moved")->location, (base::Point{640, 0}));
    rig.desktop.input().moveTo({0, 0});
    ASSERT_TRUE(rig.waitUntil([&] { return input.last("moved")->location.x == 0; }));
    EXPECT_EQ(input.last("moved")->location, (base::Point{0, 480}));
}

TEST(OverlaySurface, only_the_main_button_is_reported) {
    Rig rig(bare());
    RecordingInput input;
    const auto surface = rig.open(input);
    rig.desktop.input().click({50, 50}, 3);
    rig.desktop.input().click({60, 60}, 1);
    ASSERT_TRUE(rig.waitUntil([&] { return input.has("up"); }));
    EXPECT_EQ(input.last("down")->location, (base::Point{60, 540}));
    EXPECT_EQ(std::count_if(input.reports.begin(), input.reports.end(),
                            [](const auto& report) { return report.what == "down"; }),
              1);
}

TEST(OverlaySurface, a_held_alt_key_is_the_option_modifier_and_shift_is_not) {
    Rig rig(bare());
    RecordingInput input;
    const auto surface = rig.open(input);
    auto& hands = rig.desktop.input();
    hands.moveTo({10, 10});
    hands.press(desktop::key::leftShift);
    hands.moveTo({20, 10});
    ASSERT_TRUE(
        rig.waitUntil([&] { return input.has("moved") && input.last("moved")->location.x == 20; }));
    EXPECT_EQ(input.last("moved")->modifierFlags & optionModifierFlag, 0U);
    hands.release(desktop::key::leftShift);
    hands.press(desktop::key::leftAlt);
    hands.moveTo({30, 10});
    ASSERT_TRUE(rig.waitUntil([&] { return input.last("moved")->location.x == 30; }));
    EXPECT_EQ(input.last("moved")->modifierFlags & optionModifierFlag, optionModifierFlag);
    hands.release(desktop::key::leftAlt);
}

TEST(OverlaySurface, keys_reach_the_window_without_a_window_manager) {
    Rig rig(bare());
    RecordingInput input;
    const auto surface = rig.open(input);
    rig.desktop.input().tap(desktop::key::leftShift);
    rig.desktop.input().tap(desktop::key::space);
    rig.desktop.input().tap(desktop::key::escape);
    ASSERT_TRUE(rig.waitUntil([&] { return input.has("key 53"); }));
    EXPECT_TRUE(input.has("key 49"));
    EXPECT_FALSE(input.has("key 56"));
}

TEST(OverlaySurface, the_focus_is_taken_and_given_back) {
    Rig rig(withOpenbox());
    auto& client = rig.desktop.client();
    const xcb_window_t window = makeWindow(client, 10, 10);
    ASSERT_TRUE(desktop::waitUntil([&] { return client.inputFocus() == window; }));
    RecordingInput input;
    auto surface = rig.open(input);
    EXPECT_EQ(client.inputFocus(), rig.overlays().at(0));
    surface->close();
    rig.settle();
    EXPECT_EQ(client.inputFocus(), window);
}

TEST(OverlaySurface, the_focus_stays_where_it_is_while_the_keyboard_can_be_held) {
    Rig rig(withOpenbox());
    auto& client = rig.desktop.client();
    const xcb_window_t window = makeWindow(client, 10, 10);
    ASSERT_TRUE(desktop::waitUntil([&] { return client.inputFocus() == window; }));
    rig.keyboard = Rig::Keyboard::ours;
    RecordingInput input;
    auto surface = rig.open(input);
    EXPECT_EQ(client.inputFocus(), window);
    surface->close();
    rig.settle();
    EXPECT_EQ(client.inputFocus(), window);
}

TEST(OverlaySurface, a_focus_that_somebody_else_took_meanwhile_is_left_alone) {
    Rig rig(bare());
    auto& client = rig.desktop.client();
    const xcb_window_t first = makeWindow(client, 10, 10);
    const xcb_window_t second = makeWindow(client, 300, 10);
    xcb_set_input_focus(client.get(), XCB_INPUT_FOCUS_PARENT, first, XCB_CURRENT_TIME);
    client.synchronize();
    RecordingInput input;
    auto surface = rig.open(input);
    xcb_set_input_focus(client.get(), XCB_INPUT_FOCUS_PARENT, second, XCB_CURRENT_TIME);
    client.synchronize();
    surface->close();
    rig.settle();
    EXPECT_EQ(client.inputFocus(), second);
}

TEST(OverlaySurface, of_several_displays_the_last_has_the_keys_and_the_last_gives_them_back) {
    DesktopOptions options = bare();
    options.outputs = {display, {800, 100, 640, 480}};
    Rig rig(options);
    auto& client = rig.desktop.client();
    const xcb_window_t window = makeWindow(client, 10, 10);
    xcb_set_input_focus(client.get(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
    client.synchronize();
    RecordingInput input;
    auto first = rig.open(input, 0);
    auto second = rig.open(input, 1);
    EXPECT_EQ(client.inputFocus(), rig.overlays(1).at(0));
    first->close();
    rig.settle();
    EXPECT_EQ(client.inputFocus(), rig.overlays(1).at(0));
    second->close();
    rig.settle();
    EXPECT_EQ(client.inputFocus(), window);
}

TEST(OverlaySurface, a_window_that_opens_or_raises_itself_does_not_stay_above) {
    Rig rig(bare());
    auto& client = rig.desktop.client();
    const xcb_window_t window = makeWindow(client, 10, 10, true);
    RecordingInput input;
    const auto surface = rig.open(input);
    const xcb_window_t overlay = rig.overlays().at(0);
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(client.get(), window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    client.synchronize();
    ASSERT_EQ(client.mappedTopLevels().back(), window);
    EXPECT_TRUE(rig.waitUntil([&] { return client.mappedTopLevels().back() == overlay; }));
    const xcb_window_t menu = makeWindow(client, 50, 50, true);
    ASSERT_EQ(client.mappedTopLevels().back(), menu);
    EXPECT_TRUE(rig.waitUntil([&] { return client.mappedTopLevels().back() == overlay; }));
}

TEST(OverlaySurface, against_a_window_that_always_raises_itself_it_gives_in) {
    Rig rig(bare());
    auto& client = rig.desktop.client();
    const xcb_window_t window = makeWindow(client, 10, 10, true);
    RecordingInput input;
    const auto surface = rig.open(input);
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    int raises = 0;
    for (; raises < 200; ++raises) {
        xcb_configure_window(client.get(), window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
        client.synchronize();
        rig.settle();
        rig.settle();
        if (client.mappedTopLevels().back() == window) {
            break;
        }
    }
    EXPECT_GT(raises, 10);
    EXPECT_LT(raises, 200);
}

TEST(OverlaySurface, a_surface_may_be_destroyed_by_each_of_its_own_reports) {
    for (const std::string what : {"entered", "moved", "down", "dragged", "up", "key 49"}) {
        Rig rig(bare());
        rig.desktop.input().moveTo({5, 5});
        RecordingInput input;
        std::unique_ptr<overlay::OverlaySurface> surface =
            rig.factory->create(rig.displays.screens().at(0), {}, input);
        input.reaction = [&](const RecordingInput::Report& report) {
            if (report.what == what) {
                surface.reset();
            }
        };
        surface->makeKeyAndOrderFront();
        auto& hands = rig.desktop.input();
        hands.moveTo({20, 20});
        rig.settle();
        hands.drag({30, 30}, {60, 60}, 2);
        hands.tap(desktop::key::space);
        ASSERT_TRUE(rig.waitUntil([&] { return surface == nullptr; })) << what;
        EXPECT_EQ(input.reports.back().what, what);
        EXPECT_TRUE(rig.overlays().empty());
    }
}

TEST(OverlaySurface, a_closed_surface_reports_and_paints_nothing) {
    Rig rig(bare());
    RecordingInput input;
    const auto surface = rig.open(input);
    input.reports.clear();
    rig.desktop.input().click({90, 90});
    // The click has arrived, but nobody has looked at it when the surface is closed.
    (void)rig.connection->serverTime();
    surface->close();
    surface->close();
    rig.settle();
    rig.desktop.input().click({100, 100});
    surface->present({overlay::FillStep{{{0, 0}, {800, 600}}, 0, {}}}, {{0, 0}, {800, 600}});
    surface->makeKeyAndOrderFront();
    rig.settle();
    EXPECT_TRUE(input.reports.empty());
    EXPECT_TRUE(rig.overlays().empty());
}

TEST(OverlaySurface, the_screen_is_known_until_the_display_is_gone) {
    DesktopOptions options = bare();
    options.outputs = {display, {800, 0, 640, 480}};
    Rig rig(options);
    RecordingInput input;
    const auto surface = rig.open(input, 1);
    ASSERT_TRUE(surface->screen().has_value());
    EXPECT_EQ(surface->screen()->frame, (base::Rect{{800, 120}, {640, 480}}));
    rig.desktop.server().configure({"--output", "DUMMY1", "--off"});
    EXPECT_TRUE(rig.waitUntil([&] { return !surface->screen().has_value(); }));
}
