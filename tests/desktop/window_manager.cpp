#include "desktop/window_manager.h"

#include <cstring>
#include <fstream>
#include <functional>

#include "desktop/wait.h"

namespace desktop {
namespace {

/// Without a graphics processor the server's OpenGL is in software; KWin then has to be told to use
/// it all the same. No configuration of the machine's person, no daemon for it.
const Environment softwareGraphics{{"LIBGL_ALWAYS_SOFTWARE", "1"},
                                   {"GSETTINGS_BACKEND", "memory"},
                                   {"XDG_CURRENT_DESKTOP", "test"}};

/// Windows float, so that they are where and as large as they ask to be.
constexpr const char* i3Configuration =
    "# i3 config file (v4)\n"
    "font pango:DejaVu Sans Mono 8\n"
    "for_window [class=\".*\"] floating enable\n"
    "for_window [title=\".*\"] floating enable\n"
    "floating_minimum_size 1 x 1\n"
    "focus_follows_mouse no\n";

/// Whether the window manager's list of its windows has `window`.
bool isListed(const XClient& client, xcb_window_t window) {
    const auto list =
        client.property(client.root(), "_NET_CLIENT_LIST").value_or(std::vector<std::uint8_t>{});
    for (std::size_t index = 0; index + 4 <= list.size(); index += 4) {
        if (std::memcmp(list.data() + index, &window, 4) == 0) {
            return true;
        }
    }
    return false;
}

}  // namespace

Start windowManagerStart(WindowManager manager, Compositor compositor,
                         const std::filesystem::path& configuration) {
    const bool isCompositing = compositor == Compositor::builtIn;
    Environment environment = softwareGraphics;
    switch (manager) {
        case WindowManager::none:
            return {};
        case WindowManager::openbox:
            return {{"openbox", "--sm-disable"}, {}};
        case WindowManager::xfwm4:
            return {
                {"xfwm4", isCompositing ? "--compositor=on" : "--compositor=off", "--vblank=off"},
                environment};
        case WindowManager::kwin:
            environment["KWIN_COMPOSE"] = isCompositing ? "O2" : "N";
            return {{"kwin_x11", "--no-kactivities"}, environment};
        case WindowManager::mutter:
            return {{"mutter", "--x11"}, environment};
        case WindowManager::i3: {
            const auto file = configuration / "i3.conf";
            std::ofstream(file) << i3Configuration;
            return {{"i3", "-c", file}, environment};
        }
    }
    return {};
}

Start compositorStart(Compositor compositor) {
    Start start{{"picom", "--config", "/dev/null", "--backend", "xrender"}, softwareGraphics};
    switch (compositor) {
        case Compositor::none:
        case Compositor::builtIn:
            return {};
        case Compositor::picom:
            break;
        case Compositor::picomFading:
            start.command.emplace_back("--fading");
            break;
        case Compositor::picomShadows:
            start.command.insert(start.command.end(), {"--fading", "--shadow"});
            break;
        case Compositor::picomGlx:
            start.command.back() = "glx";
            break;
    }
    return start;
}

void awaitWindowManager(const XClient& client) {
    xcb_connection_t* connection = client.get();
    require("The start of the window manager",
            [&] { return client.property(client.root(), "_NET_SUPPORTING_WM_CHECK").has_value(); });
    const xcb_window_t probe = xcb_generate_id(connection);
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, probe, client.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_map_window(connection, probe);
    const xcb_atom_t poke = client.atom("LUMAFRAME_TEST_POKE");
    // openbox forgets a window that is mapped between its announcement and its event loop until
    // some other event arrives: changes of a root property.
    const auto pokeUntil = [&](const std::function<bool()>& condition) {
        require("The readiness of the window manager", [&] {
            xcb_change_property(connection, XCB_PROP_MODE_REPLACE, client.root(), poke,
                                XCB_ATOM_CARDINAL, 32, 1, &probe);
            return condition();
        });
    };
    pokeUntil(
        [&] { return client.property(probe, "WM_STATE").has_value() && isListed(client, probe); });
    xcb_destroy_window(connection, probe);
    pokeUntil([&] { return !isListed(client, probe); });
    xcb_delete_property(connection, client.root(), poke);
    client.synchronize();
}

}  // namespace desktop
