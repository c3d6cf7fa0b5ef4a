#include "platform/x11/x11_pointer.h"

#include <gtest/gtest.h>
#include <xcb/xfixes.h>

#include "platform/x11/surface_rig.h"

using overlay::Cursor;
using surface_rig::RecordingInput;
using surface_rig::Rig;

namespace {

desktop::DesktopOptions bare() {
    desktop::DesktopOptions options;
    options.outputs = {{0, 0, 800, 600}, {800, 40, 640, 480}};
    options.windowManager = desktop::WindowManager::none;
    return options;
}

/// The picture of the pointer that the screen shows.
std::vector<std::uint32_t> shownCursor(const desktop::XClient& client) {
    const desktop::Reply<xcb_xfixes_query_version_reply_t> version(xcb_xfixes_query_version_reply(
        client.get(), xcb_xfixes_query_version(client.get(), 4, 0), nullptr));
    const desktop::Reply<xcb_xfixes_get_cursor_image_reply_t> reply(
        xcb_xfixes_get_cursor_image_reply(client.get(), xcb_xfixes_get_cursor_image(client.get()),
                                          nullptr));
    if (!reply) {
        return {};
    }
    const auto* pixels = xcb_xfixes_get_cursor_image_cursor_image(reply.get());
    std::vector<std::uint32_t> cursor{reply->width, reply->height, reply->xhot, reply->yhot};
    cursor.insert(cursor.end(), pixels,
                  pixels + xcb_xfixes_get_cursor_image_cursor_image_length(reply.get()));
    return cursor;
}

}  // namespace

TEST(X11Pointer, each_cursor_is_shown_over_the_overlay) {
    Rig rig(bare());
    rig.desktop.input().moveTo({400, 300});
    const auto outside = shownCursor(rig.desktop.client());
    RecordingInput input;
    const auto surface = rig.open(input);
    const auto shown = [&](Cursor cursor) {
        rig.pointer.setCursor(cursor);
        rig.settle();
        return shownCursor(rig.desktop.client());
    };
    const auto arrow = shown(Cursor::arrow);
    const auto crosshair = shown(Cursor::crosshair);
    const auto hand = shown(Cursor::pointingHand);
    EXPECT_NE(arrow, crosshair);
    EXPECT_NE(arrow, hand);
    EXPECT_NE(crosshair, hand);
    EXPECT_EQ(shown(Cursor::crosshair), crosshair);
    surface->close();
    rig.settle();
    EXPECT_EQ(shownCursor(rig.desktop.client()), outside);
}

TEST(X11Pointer, a_window_that_opens_later_has_the_cursor_of_the_moment) {
    Rig rig(bare());
    rig.desktop.input().moveTo({1000, 300});
    RecordingInput input;
    const auto first = rig.open(input, 1);
    rig.pointer.setCursor(Cursor::crosshair);
    rig.settle();
    const auto crosshair = shownCursor(rig.desktop.client());
    rig.desktop.input().moveTo({400, 300});
    EXPECT_NE(shownCursor(rig.desktop.client()), crosshair);
    const auto second = rig.open(input, 0);
    EXPECT_EQ(shownCursor(rig.desktop.client()), crosshair);
}

TEST(X11Pointer, the_location_is_in_top_left_space_of_the_display_it_is_on) {
    Rig rig(bare(), 2.0);
    rig.desktop.input().moveTo({100, 50});
    EXPECT_EQ(rig.pointer.location(), (base::Point{50, 25}));
    rig.desktop.input().moveTo({820, 60});
    EXPECT_EQ(rig.pointer.location(), (base::Point{810, 50}));
}
