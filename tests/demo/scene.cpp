#include "demo/scene.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <utility>

namespace demo {

namespace {

using desktop::Reply;
using desktop::XClient;

constexpr const char* notes = R"(Garden club, Thursday

  1. The old pear tree by the wall bears fruit again.
  2. Seeds for spring: sweet peas, borage, two kinds of bean.
  3. Who brings the ladder?  (Ada, with the blue van.)

  The gate sticks when it rains. Lift it, then push;
  do not kick it, however much it asks for it.

Next time: 19:30, bring last year's jars.
)";

constexpr const char* table = R"(  town           rain mm   sun h
  ------------------------------
  Aalborg             68     141
  Bergen             213      94
  Cork               103     122
  Dresden             54     170
  Evora               49     214
  ------------------------------
  five towns         487     741
)";

Reply<xcb_get_geometry_reply_t> geometryOf(const XClient& client, xcb_window_t window) {
    return Reply<xcb_get_geometry_reply_t>(
        xcb_get_geometry_reply(client.get(), xcb_get_geometry(client.get(), window), nullptr));
}

/// The ancestor of `window` that is a child of the root: the window manager's frame.
xcb_window_t frameOf(const XClient& client, xcb_window_t window) {
    while (true) {
        const Reply<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(client.get(), xcb_query_tree(client.get(), window), nullptr));
        if (!tree || tree->parent == client.root() || tree->parent == XCB_WINDOW_NONE) {
            return window;
        }
        window = tree->parent;
    }
}

std::vector<xcb_window_t> managedWindows(const XClient& client) {
    const auto bytes = client.property(client.root(), "_NET_CLIENT_LIST");
    std::vector<xcb_window_t> windows(bytes ? bytes->size() / sizeof(xcb_window_t) : 0);
    if (!windows.empty()) {
        std::memcpy(windows.data(), bytes->data(), windows.size() * sizeof(xcb_window_t));
    }
    return windows;
}

}  // namespace

Scene::Scene(desktop::Desktop& desktop) : desktop_(desktop) {
    paintBackground();
    notes_ = openText("Notes", "62x14+90+110", "#fffdf4/#26323c", notes);
    openText("Rain and sun", "38x12+700+420", "#1e2430/#d7e3f4", table);
}

Scene::~Scene() = default;

void Scene::paintBackground() {
    const XClient& client = desktop_.client();
    xcb_connection_t* connection = client.get();
    const auto width = client.screen().width_in_pixels;
    const auto height = client.screen().height_in_pixels;
    const xcb_pixmap_t pixmap = xcb_generate_id(connection);
    const xcb_gcontext_t pen = xcb_generate_id(connection);
    xcb_create_pixmap(connection, client.screen().root_depth, pixmap, client.root(), width, height);
    xcb_create_gc(connection, pen, pixmap, 0, nullptr);
    for (std::uint16_t y = 0; y < height; ++y) {
        const auto shade = static_cast<std::uint32_t>(y) * 90 / height;
        const std::uint32_t color =
            (0x30 + shade) << 16 | (0x70 + shade / 2) << 8 | (0xa8 - shade / 2);
        const xcb_rectangle_t row{0, static_cast<std::int16_t>(y), width, 1};
        xcb_change_gc(connection, pen, XCB_GC_FOREGROUND, &color);
        xcb_poly_fill_rectangle(connection, pixmap, pen, 1, &row);
    }
    xcb_change_window_attributes(connection, client.root(), XCB_CW_BACK_PIXMAP, &pixmap);
    // The compositor paints the background itself and finds it by this property.
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, client.root(),
                        client.atom("_XROOTPMAP_ID"), XCB_ATOM_PIXMAP, 32, 1, &pixmap);
    xcb_clear_area(connection, 0, client.root(), 0, 0, 0, 0);
    xcb_free_gc(connection, pen);
    client.synchronize();
}

xcb_window_t Scene::openText(const std::string& title, const std::string& geometry,
                             const std::string& colors, const std::string& text) {
    const auto file = desktop_.directory() / (title + ".txt");
    std::ofstream(file) << text;
    const auto slash = colors.find('/');
    const XClient& client = desktop_.client();
    const auto before = managedWindows(client).size();
    programs_.push_back(desktop_.start(title, {"xterm",
                                               "-title",
                                               title,
                                               "-geometry",
                                               geometry,
                                               "-fa",
                                               "DejaVu Sans Mono",
                                               "-fs",
                                               "12",
                                               "-bg",
                                               colors.substr(0, slash),
                                               "-fg",
                                               colors.substr(slash + 1),
                                               "-b",
                                               "12",
                                               "+sb",
                                               "-hold",
                                               "-e",
                                               "cat",
                                               file}));
    desktop::require("The opening of a window with text",
                     [&] { return managedWindows(client).size() > before; });
    readSettledScreen(client);
    return managedWindows(client).back();
}

void Scene::activateNotes(desktop::Place placeInside) {
    desktop_.input().click(placeInside);
    const XClient& client = desktop_.client();
    desktop::require("The activation of the window \"Notes\"",
                     [&] { return client.value(client.root(), "_NET_ACTIVE_WINDOW") == notes_; });
}

xcb_window_t windowWithRole(const XClient& client, const std::string& part) {
    for (const xcb_window_t window : managedWindows(client)) {
        const auto role = client.property(window, "WM_WINDOW_ROLE");
        if (role && std::string(role->begin(), role->end()).find(part) != std::string::npos) {
            return window;
        }
    }
    return XCB_WINDOW_NONE;
}

void closeWindow(const XClient& client, xcb_window_t window) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = client.atom("_NET_CLOSE_WINDOW");
    xcb_send_event(client.get(), 0, client.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message));
    client.synchronize();
    desktop::require("The closing of a window",
                     [&] { return std::ranges::count(managedWindows(client), window) == 0; });
    readSettledScreen(client);
}

desktop::Picture readWindow(const XClient& client, xcb_window_t window) {
    const auto frame = geometryOf(client, frameOf(client, window));
    if (!frame) {
        return {};
    }
    const int left = std::max<int>(frame->x, 0);
    const int top = std::max<int>(frame->y, 0);
    const int right = std::min<int>(frame->x + frame->width, client.screen().width_in_pixels);
    const int bottom = std::min<int>(frame->y + frame->height, client.screen().height_in_pixels);
    return desktop::readScreen(client, left, top, right - left, bottom - top);
}

desktop::Picture readWindowDuringDrag(const XClient& client, xcb_window_t window, int scale) {
    // Points: the middle of the selection's lower edge, where the film's view has it, and how far
    // the font of the title may shift it.
    constexpr desktop::Place edge{140, 287};
    constexpr int tolerance = 6;
    const auto isViolet = [](std::uint32_t pixel) {
        const std::uint32_t red = pixel >> 16 & 0xff;
        const std::uint32_t green = pixel >> 8 & 0xff;
        const std::uint32_t blue = pixel & 0xff;
        return blue > 0xa0 && green < 0x60 && red > 0x40 && red < 0xa0;
    };
    const Reply<xcb_translate_coordinates_reply_t> origin(xcb_translate_coordinates_reply(
        client.get(), xcb_translate_coordinates(client.get(), window, client.root(), 0, 0),
        nullptr));
    // A round of the film lasts twelve seconds.
    desktop::require(
        "A drag in the film of the permissions window",
        [&] {
            const desktop::Picture strip = desktop::readScreen(
                client, origin->dst_x + edge.x * scale,
                origin->dst_y + (edge.y - tolerance) * scale, 1, 2 * tolerance * scale);
            return std::ranges::any_of(strip.pixels, isViolet);
        },
        std::chrono::seconds(60));
    return readWindow(client, window);
}

desktop::Picture readSettledScreen(const XClient& client) {
    desktop::Picture screen = desktop::readScreen(client);
    desktop::require("A screen that has stopped changing", [&] {
        const desktop::Picture earlier = std::exchange(screen, desktop::readScreen(client));
        return desktop::staysTrue([&] { return desktop::readScreen(client) == screen; },
                                  std::chrono::milliseconds(100)) &&
               earlier == screen;
    });
    return screen;
}

}  // namespace demo
