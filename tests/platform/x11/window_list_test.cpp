#include "platform/x11/window_list.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "capture_rig.h"
#include "platform/platform.h"
#include "platform/x11/top_levels.h"

namespace {

using capture::DesktopWindows;
using capture::WindowVisibility;
using platform::x11::mergeStacking;
using platform::x11::NativeRect;
using tests::CaptureRig;
using Management = tests::PlainWindowOptions::Management;

desktop::DesktopOptions with(desktop::WindowManager windowManager) {
    return {.windowManager = windowManager};
}

xcb_window_t open(CaptureRig& rig, const NativeRect& frame, Management management) {
    const xcb_window_t window =
        tests::makeWindow(rig.desktop().client().get(),
                          {.frame = frame, .background = 0x336699, .management = management});
    rig.desktop().client().synchronize();
    return window;
}

/// Opens a window that the window manager has put on the screen.
xcb_window_t openManaged(CaptureRig& rig, const NativeRect& frame) {
    const xcb_window_t window = open(rig, frame, Management::managed);
    EXPECT_TRUE(rig.runUntil([&] { return rig.listed(window).has_value(); }));
    return window;
}

std::vector<capture::WindowID> idsOf(const std::vector<capture::ShareableWindow>& windows,
                                     const std::vector<xcb_window_t>& wanted) {
    std::vector<capture::WindowID> ids;
    for (const auto& window : windows) {
        if (std::find(wanted.begin(), wanted.end(), window.windowID) != wanted.end()) {
            ids.push_back(window.windowID);
        }
    }
    return ids;
}

/// Asks the window manager for something, as another program does.
void sendToRoot(CaptureRig& rig, xcb_window_t window, const std::string& type,
                const std::array<std::uint32_t, 5>& data) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = rig.desktop().client().atom(type);
    std::copy(data.begin(), data.end(), message.data.data32);
    xcb_send_event(rig.desktop().client().get(), 0, rig.desktop().client().root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    rig.desktop().client().synchronize();
}

TEST(MergeStacking, keeps_the_given_order_and_puts_the_others_above_what_they_cover) {
    // Bottom to top: the frame of 1, 50, the frame of 2, 60, the frame of 3.
    const std::vector<xcb_window_t> stack{101, 50, 102, 60, 103};
    const auto merged =
        mergeStacking({1, 3, 2, 9}, {60, 50}, stack, {{1, 101}, {2, 102}, {3, 103}});
    EXPECT_EQ(merged, (std::vector<xcb_window_t>{1, 50, 3, 2, 60}));
}

TEST(ContentList, lists_the_displays_with_the_primary_first) {
    using platform::x11::DisplayRole;
    CaptureRig rig(with(desktop::WindowManager::none));
    rig.setLayout(platform::x11::DisplayLayout(
        {{1, "A", {0, 0, 400, 600}, 1.0, DisplayRole::secondary, nullptr},
         {2, "B", {400, 100, 400, 300}, 1.0, DisplayRole::primary, nullptr}}));
    const auto displays = rig.content().displays;
    ASSERT_EQ(displays.size(), 2U);
    EXPECT_EQ(displays[0].displayID, 2U);
    EXPECT_EQ(displays[0].frame, (base::Rect{{0, 0}, {400, 300}}));
    // Its upper edge is 100 above that of the primary, its lower one 200 below.
    EXPECT_EQ(displays[1].frame, (base::Rect{{-400, -200}, {400, 600}}));
}

TEST(ContentList, lists_windows_front_to_back) {
    CaptureRig rig(with(desktop::WindowManager::openbox));
    const xcb_window_t first = openManaged(rig, {50, 50, 200, 150});
    const xcb_window_t second = openManaged(rig, {100, 100, 200, 150});
    const std::vector<xcb_window_t> both{first, second};
    EXPECT_EQ(idsOf(rig.content().windows, both), (std::vector<capture::WindowID>{second, first}));
    sendToRoot(rig, first, "_NET_ACTIVE_WINDOW", {2, 0, 0, 0, 0});
    EXPECT_TRUE(rig.runUntil([&] {
        return idsOf(rig.content().windows, both) == std::vector<capture::WindowID>{first, second};
    }));
}

TEST(ContentList, puts_an_unmanaged_window_where_it_lies_among_the_managed_ones) {
    CaptureRig rig(with(desktop::WindowManager::openbox));
    const xcb_window_t lower = openManaged(rig, {50, 50, 200, 150});
    const xcb_window_t menu = open(rig, {60, 60, 50, 50}, Management::unmanaged);
    EXPECT_EQ(idsOf(rig.content().windows, {lower, menu}),
              (std::vector<capture::WindowID>{menu, lower}));
    EXPECT_GT(rig.listed(menu)->windowLayer, 0);
}

TEST(ContentList, gives_the_frame_with_the_decoration_in_top_left_space) {
    CaptureRig rig(with(desktop::WindowManager::openbox));
    const xcb_window_t window = openManaged(rig, {150, 120, 200, 150});
    auto& client = rig.desktop().client();
    ASSERT_TRUE(
        rig.runUntil([&] { return client.property(window, "_NET_FRAME_EXTENTS").has_value(); }));
    const auto bytes = *client.property(window, "_NET_FRAME_EXTENTS");
    std::array<std::uint32_t, 4> extents{};
    ASSERT_EQ(bytes.size(), sizeof extents);
    std::memcpy(extents.data(), bytes.data(), sizeof extents);
    EXPECT_GT(extents[2], 0U) << "a title bar";
    const desktop::Reply<xcb_translate_coordinates_reply_t> inner(xcb_translate_coordinates_reply(
        client.get(), xcb_translate_coordinates(client.get(), window, client.root(), 0, 0),
        nullptr));
    const auto listed = rig.listed(window);
    ASSERT_TRUE(listed);
    EXPECT_EQ(listed->frame.minX(), inner->dst_x - static_cast<int>(extents[0]));
    EXPECT_EQ(listed->frame.minY(), inner->dst_y - static_cast<int>(extents[2]));
    EXPECT_EQ(listed->frame.size.width, 200 + extents[0] + extents[1]);
    EXPECT_EQ(listed->frame.size.height, 150 + extents[2] + extents[3]);
}

TEST(ContentList, takes_off_the_shadow_that_a_window_draws_itself) {
    CaptureRig rig(with(desktop::WindowManager::none));
    const xcb_window_t window = open(rig, {150, 120, 200, 150}, Management::managed);
    tests::setNumbers(rig.desktop().client(), window, "_GTK_FRAME_EXTENTS", "CARDINAL",
                      {10, 11, 12, 13});
    EXPECT_EQ(rig.listed(window)->frame, (base::Rect{{160, 132}, {179, 125}}));
    tests::setNumbers(rig.desktop().client(), window, "_GTK_FRAME_EXTENTS", "CARDINAL",
                      {10, 0xffffffff, 12, 13});
    EXPECT_EQ(rig.listed(window)->frame, (base::Rect{{150, 120}, {200, 150}}));
}

TEST(ContentList, gives_layers_by_what_windows_are_for) {
    CaptureRig rig(with(desktop::WindowManager::none));
    auto& client = rig.desktop().client();
    const auto layerWith = [&](const std::string& type, Management management) {
        const xcb_window_t window = open(rig, {10, 10, 100, 100}, management);
        if (!type.empty()) {
            tests::setNumbers(
                client, window, "_NET_WM_WINDOW_TYPE", "ATOM",
                {client.atom("_MADE_UP"), client.atom("_NET_WM_WINDOW_TYPE_" + type)});
        }
        return rig.listed(window)->windowLayer;
    };
    for (const char* ordinary : {"", "NORMAL", "DIALOG", "UTILITY", "SPLASH", "TOOLBAR"}) {
        EXPECT_EQ(layerWith(ordinary, Management::managed), 0) << ordinary;
        EXPECT_GT(layerWith(ordinary, Management::unmanaged), 0) << ordinary;
    }
    for (const char* above : {"DOCK", "MENU", "DROPDOWN_MENU", "POPUP_MENU", "TOOLTIP", "COMBO",
                              "DND", "NOTIFICATION"}) {
        EXPECT_GT(layerWith(above, Management::managed), 0) << above;
    }
}

TEST(ContentList, a_window_that_stays_above_has_layer_0) {
    CaptureRig rig(with(desktop::WindowManager::openbox));
    const xcb_window_t window = openManaged(rig, {50, 50, 200, 150});
    auto& client = rig.desktop().client();
    sendToRoot(rig, window, "_NET_WM_STATE", {1, client.atom("_NET_WM_STATE_ABOVE"), 0, 2, 0});
    EXPECT_TRUE(rig.runUntil([&] {
        const auto states = client.property(window, "_NET_WM_STATE");
        return states && !states->empty();
    }));
    EXPECT_EQ(rig.listed(window)->windowLayer, 0);
}

TEST(ContentList, leaves_the_desktop_out_when_asked_to) {
    CaptureRig rig(with(desktop::WindowManager::none));
    const xcb_window_t window = open(rig, {0, 0, 800, 600}, Management::managed);
    auto& client = rig.desktop().client();
    tests::setNumbers(client, window, "_NET_WM_WINDOW_TYPE", "ATOM",
                      {client.atom("_NET_WM_WINDOW_TYPE_DESKTOP")});
    EXPECT_EQ(idsOf(rig.content(DesktopWindows::excluded).windows, {window}).size(), 0U);
    const auto all = rig.content(DesktopWindows::included).windows;
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&](const auto& each) { return each.windowID == window; });
    ASSERT_NE(found, all.end());
    EXPECT_LT(found->windowLayer, 0);
}

TEST(ContentList, a_minimised_window_is_not_on_the_screen) {
    CaptureRig rig(with(desktop::WindowManager::openbox));
    const xcb_window_t window = openManaged(rig, {50, 50, 200, 150});
    sendToRoot(rig, window, "WM_CHANGE_STATE", {3, 0, 0, 0, 0});
    EXPECT_TRUE(rig.runUntil([&] { return !rig.listed(window, WindowVisibility::onScreenOnly); }));
    EXPECT_TRUE(rig.listed(window, WindowVisibility::all));
}

TEST(ContentList, a_window_of_another_desktop_is_not_on_the_screen) {
    CaptureRig rig(with(desktop::WindowManager::none));
    auto& client = rig.desktop().client();
    const xcb_window_t window = open(rig, {50, 50, 200, 150}, Management::managed);
    tests::setNumbers(client, client.root(), "_NET_CURRENT_DESKTOP", "CARDINAL", {1});
    tests::setNumbers(client, window, "_NET_WM_DESKTOP", "CARDINAL", {0});
    EXPECT_FALSE(rig.listed(window, WindowVisibility::onScreenOnly));
    EXPECT_TRUE(rig.listed(window, WindowVisibility::all));
    tests::setNumbers(client, window, "_NET_WM_DESKTOP", "CARDINAL", {0xffffffff});
    EXPECT_TRUE(rig.listed(window, WindowVisibility::onScreenOnly));
}

TEST(ContentList, without_a_window_manager_lists_the_mapped_children_of_the_root) {
    CaptureRig rig(with(desktop::WindowManager::none));
    const xcb_window_t lower = open(rig, {50, 50, 200, 150}, Management::managed);
    const xcb_window_t menu = open(rig, {60, 60, 50, 50}, Management::unmanaged);
    const xcb_window_t upper = open(rig, {100, 100, 200, 150}, Management::managed);
    EXPECT_EQ(idsOf(rig.content().windows, {lower, menu, upper}),
              (std::vector<capture::WindowID>{upper, menu, lower}));
    xcb_unmap_window(rig.desktop().client().get(), upper);
    rig.desktop().client().synchronize();
    EXPECT_FALSE(rig.listed(upper, WindowVisibility::all));
}

TEST(ContentList, names_the_process_of_each_window) {
    CaptureRig rig(with(desktop::WindowManager::none));
    const xcb_window_t window = open(rig, {50, 50, 200, 150}, Management::managed);
    const auto listed = rig.listed(window);
    ASSERT_TRUE(listed && listed->owningApplication);
    EXPECT_EQ(listed->owningApplication->processID, getpid());
}

TEST(ContentList, lists_the_overlay_as_ours_above_everything) {
    CaptureRig rig(with(desktop::WindowManager::none));
    const xcb_window_t overlay = tests::makeWindow(
        rig.connection().get(), {.frame = {0, 0, 800, 600}, .depth = tests::PixelDepth::withAlpha});
    rig.stage().windowMapped(overlay, {0, 0, 800, 600}, nullptr);
    const auto listed = rig.listed(overlay);
    ASSERT_TRUE(listed && listed->owningApplication);
    EXPECT_EQ(listed->windowLayer, 1000);
    EXPECT_EQ(listed->owningApplication->bundleIdentifier, platform::applicationIdentifier);
    EXPECT_EQ(listed->owningApplication->processID, getpid());
}

TEST(ContentList, has_the_windows_that_only_the_list_without_order_names) {
    CaptureRig rig(with(desktop::WindowManager::openbox));
    const xcb_window_t first = openManaged(rig, {50, 50, 200, 150});
    const xcb_window_t second = openManaged(rig, {100, 100, 200, 150});
    const auto& client = rig.desktop().client();
    // Of the order nothing is said, or of one window only.
    for (const std::vector<std::uint32_t>& order : {std::vector<std::uint32_t>{}, {second}}) {
        tests::setNumbers(client, client.root(), "_NET_CLIENT_LIST_STACKING", "WINDOW", order);
        const auto windows = rig.content().windows;
        EXPECT_EQ(idsOf(windows, {first, second}), (std::vector<capture::WindowID>{second, first}));
        EXPECT_TRUE(std::all_of(windows.begin(), windows.end(), [&](const auto& window) {
            return window.windowID != first || window.owningApplication->processID == getpid();
        }));
    }
}

TEST(ContentList, a_list_that_names_windows_that_are_gone_is_no_trouble) {
    CaptureRig rig(with(desktop::WindowManager::none));
    auto& client = rig.desktop().client();
    const xcb_window_t window = open(rig, {50, 50, 200, 150}, Management::managed);
    tests::setNumbers(client, client.root(), "_NET_CLIENT_LIST_STACKING", "WINDOW",
                      {0, 0xdeadbeef, window, window, client.root()});
    EXPECT_EQ(idsOf(rig.content().windows, {window, 0xdeadbeef, client.root(), 0}),
              std::vector<capture::WindowID>{window});
}

}  // namespace
