#include "platform/x11/x11_workspace.h"

#include <unistd.h>

#include <array>
#include <utility>

#include "platform/x11/window_owner.h"
#include "platform/x11/window_property.h"
#include "platform/x11/window_tree.h"

namespace platform::x11 {

namespace {

/// The file name of the program that a process runs, empty when the system does not tell.
std::string executableOf(std::int32_t process) {
    std::array<char, 4096> target{};
    const std::string link = "/proc/" + std::to_string(process) + "/exe";
    const ssize_t length = ::readlink(link.c_str(), target.data(), target.size());
    if (length <= 0) {
        return {};
    }
    const std::string path(target.data(), static_cast<std::size_t>(length));
    return path.substr(path.rfind('/') + 1);
}

}  // namespace

X11Workspace::X11Workspace(Connection& connection, NameLookup nameOf)
    : connection_(connection), nameOf_(std::move(nameOf)) {}

std::optional<overlay::Application> X11Workspace::frontmostApplication() {
    const xcb_window_t manager = windowManager();
    if (manager != XCB_WINDOW_NONE) {
        if (auto application = applicationOfActiveWindow()) {
            return application;
        }
    }
    if (auto application = applicationOfFocus(manager)) {
        return application;
    }
    return applicationUnderPointer(manager);
}

xcb_window_t X11Workspace::windowManager() {
    // The property on the root outlives a window manager that ended; the window it names does not.
    const auto named = readNumber(
        connection_, askForProperty(connection_, connection_.root(), "_NET_SUPPORTING_WM_CHECK"),
        XCB_ATOM_WINDOW);
    if (!named) {
        return XCB_WINDOW_NONE;
    }
    const auto itself =
        readNumber(connection_, askForProperty(connection_, *named, "_NET_SUPPORTING_WM_CHECK"),
                   XCB_ATOM_WINDOW);
    return itself == named ? *named : xcb_window_t{XCB_WINDOW_NONE};
}

std::optional<overlay::Application> X11Workspace::applicationOfActiveWindow() {
    const auto active = readNumber(
        connection_, askForProperty(connection_, connection_.root(), "_NET_ACTIVE_WINDOW"),
        XCB_ATOM_WINDOW);
    // The number of a window that is gone may by now be in the range of another program.
    if (!active || *active == XCB_WINDOW_NONE || !isVisibleWindow(connection_, *active)) {
        return std::nullopt;
    }
    return applicationOf(*active);
}

std::optional<overlay::Application> X11Workspace::applicationOfFocus(xcb_window_t windowManager) {
    const Reply<xcb_get_input_focus_reply_t> focus(xcb_get_input_focus_reply(
        connection_.get(), xcb_get_input_focus(connection_.get()), nullptr));
    if (!focus || focus->focus == XCB_INPUT_FOCUS_NONE ||
        focus->focus == XCB_INPUT_FOCUS_POINTER_ROOT || focus->focus == connection_.root()) {
        return std::nullopt;
    }
    const xcb_window_t client = clientAround(connection_, focus->focus);
    // A window manager gives the focus to a window of its own when no other may have it.
    if (client == XCB_WINDOW_NONE || !isVisibleWindow(connection_, client) ||
        (windowManager != XCB_WINDOW_NONE && areOfOneClient(connection_, client, windowManager))) {
        return std::nullopt;
    }
    return applicationOf(client);
}

std::optional<overlay::Application> X11Workspace::applicationUnderPointer(
    xcb_window_t windowManager) {
    const Reply<xcb_query_pointer_reply_t> pointer(xcb_query_pointer_reply(
        connection_.get(), xcb_query_pointer(connection_.get(), connection_.root()), nullptr));
    if (!pointer || pointer->child == XCB_WINDOW_NONE) {
        return std::nullopt;
    }
    for (const xcb_window_t topLevel : topLevelsAt(connection_, pointer->root_x, pointer->root_y)) {
        if (isOwnWindow(connection_, topLevel)) {
            continue;
        }
        const xcb_window_t client = clientInside(connection_, topLevel);
        if (windowManager != XCB_WINDOW_NONE &&
            areOfOneClient(connection_, client, windowManager)) {
            continue;
        }
        return applicationOf(client);
    }
    return std::nullopt;
}

std::optional<overlay::Application> X11Workspace::applicationOf(xcb_window_t window) {
    if (isOwnWindow(connection_, window)) {
        return std::nullopt;
    }
    const WindowOwner owner = ownersOf(connection_, {window}).front();
    if (!owner.processID) {
        return std::nullopt;
    }
    std::vector<std::string> identifiers = owner.identifiers;
    identifiers.push_back(executableOf(*owner.processID));
    lastFrontProcess_ = owner.processID;
    const auto name = nameOf_ ? nameOf_(identifiers) : std::nullopt;
    return overlay::Application{*owner.processID, name ? name : owner.className};
}

}  // namespace platform::x11
