#include "x11_rig.h"

#include <poll.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <stdexcept>

namespace tests {

namespace {

const xcb_screen_t& screenOf(xcb_connection_t* connection) {
    return *xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
}

xcb_visualid_t visualOf(xcb_connection_t* connection, PixelDepth depth) {
    for (auto depths = xcb_screen_allowed_depths_iterator(&screenOf(connection)); depths.rem > 0;
         xcb_depth_next(&depths)) {
        if (depths.data->depth == static_cast<std::uint8_t>(depth)) {
            return xcb_depth_visuals_iterator(depths.data).data->visual_id;
        }
    }
    throw std::runtime_error("The server has no visual of the depth.");
}

}  // namespace

bool runUntil(platform::x11::Connection& connection, doubles::ManualMainQueue& queue,
              const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + desktop::defaultLimit;
    while (true) {
        connection.dispatchPendingEvents();
        queue.runAll();
        if (condition()) {
            return true;
        }
        if (std::chrono::steady_clock::now() > end || connection.isLost()) {
            return false;
        }
        pollfd descriptor{connection.fileDescriptor(), POLLIN, 0};
        poll(&descriptor, 1, 20);
    }
}

std::unique_ptr<platform::x11::Connection> connectTo(const desktop::Desktop& desktop) {
    auto connection = platform::x11::Connection::open(desktop.displayName());
    if (!connection) {
        throw std::runtime_error(connection.error().sentence);
    }
    return std::move(connection.value());
}

xcb_window_t makeWindow(xcb_connection_t* connection, const PlainWindowOptions& options) {
    const xcb_screen_t& screen = screenOf(connection);
    const xcb_visualid_t visual = visualOf(connection, options.depth);
    const xcb_colormap_t colormap = xcb_generate_id(connection);
    xcb_create_colormap(connection, XCB_COLORMAP_ALLOC_NONE, colormap, screen.root, visual);
    const xcb_window_t window = xcb_generate_id(connection);
    const bool isUnmanaged = options.management == PlainWindowOptions::Management::unmanaged;
    const std::array<std::uint32_t, 5> values{options.background, 0, isUnmanaged ? 1U : 0U,
                                              XCB_EVENT_MASK_EXPOSURE, colormap};
    xcb_create_window(
        connection, static_cast<std::uint8_t>(options.depth), window, screen.root,
        static_cast<std::int16_t>(options.frame.x), static_cast<std::int16_t>(options.frame.y),
        static_cast<std::uint16_t>(options.frame.width),
        static_cast<std::uint16_t>(options.frame.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
        XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK |
            XCB_CW_COLORMAP,
        values.data());
    // The size hints keep a window manager from choosing another place or size.
    const std::array<std::uint32_t, 18> hints{0x3f,
                                              static_cast<std::uint32_t>(options.frame.x),
                                              static_cast<std::uint32_t>(options.frame.y),
                                              static_cast<std::uint32_t>(options.frame.width),
                                              static_cast<std::uint32_t>(options.frame.height),
                                              static_cast<std::uint32_t>(options.frame.width),
                                              static_cast<std::uint32_t>(options.frame.height),
                                              static_cast<std::uint32_t>(options.frame.width),
                                              static_cast<std::uint32_t>(options.frame.height)};
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NORMAL_HINTS,
                        XCB_ATOM_WM_SIZE_HINTS, 32, hints.size(), hints.data());
    xcb_map_window(connection, window);
    xcb_flush(connection);
    return window;
}

void fill(xcb_connection_t* connection, xcb_window_t window, const platform::x11::NativeRect& area,
          std::uint32_t color) {
    const xcb_gcontext_t context = xcb_generate_id(connection);
    xcb_create_gc(connection, context, window, XCB_GC_FOREGROUND, &color);
    const xcb_rectangle_t rectangle{
        static_cast<std::int16_t>(area.x), static_cast<std::int16_t>(area.y),
        static_cast<std::uint16_t>(area.width), static_cast<std::uint16_t>(area.height)};
    xcb_poly_fill_rectangle(connection, window, context, 1, &rectangle);
    xcb_free_gc(connection, context);
    xcb_flush(connection);
}

void awaitBlending(desktop::Desktop& desktop) {
    constexpr std::uint32_t white = 0xffffffff;
    const platform::x11::NativeRect corner{0, 0, 4, 4};
    auto* const client = desktop.client().get();
    const xcb_window_t below = makeWindow(client, {.frame = corner, .background = white});
    const xcb_window_t clear =
        makeWindow(client, {.frame = corner, .depth = PixelDepth::withAlpha});
    desktop::require("The first frame of the compositor", [&] {
        // Unblended the upper window is black.
        return desktop::readScreen(desktop.client(), 1, 1, 1, 1).at(0, 0) == white;
    });
    xcb_destroy_window(client, clear);
    xcb_destroy_window(client, below);
    desktop.client().synchronize();
}

void setNumbers(const desktop::XClient& client, xcb_window_t window, const std::string& property,
                const std::string& type, const std::vector<std::uint32_t>& numbers) {
    xcb_change_property(client.get(), XCB_PROP_MODE_REPLACE, window, client.atom(property),
                        client.atom(type), 32, static_cast<std::uint32_t>(numbers.size()),
                        numbers.data());
    client.synchronize();
}

}  // namespace tests
