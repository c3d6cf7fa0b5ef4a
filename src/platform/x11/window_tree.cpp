#include "platform/x11/window_tree.h"

#include <span>

#include "platform/x11/window_property.h"

namespace platform::x11 {

namespace {

/// Toolkits and window managers nest a handful of windows; only a hostile client nests more.
constexpr int deepestNesting = 32;

using Tree = Reply<xcb_query_tree_reply_t>;

std::span<const xcb_window_t> childrenOf(const xcb_query_tree_reply_t& tree) {
    return {xcb_query_tree_children(&tree),
            static_cast<std::size_t>(xcb_query_tree_children_length(&tree))};
}

Tree treeOf(Connection& connection, xcb_window_t window) {
    return Tree(
        xcb_query_tree_reply(connection.get(), xcb_query_tree(connection.get(), window), nullptr));
}

bool isVisible(const xcb_get_window_attributes_reply_t* attributes) {
    return attributes != nullptr && attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
           attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT;
}

bool holds(const xcb_get_geometry_reply_t* geometry, std::int32_t x, std::int32_t y) {
    if (geometry == nullptr) {
        return false;
    }
    const std::int32_t border = 2 * geometry->border_width;
    return x >= geometry->x && x < geometry->x + geometry->width + border && y >= geometry->y &&
           y < geometry->y + geometry->height + border;
}

/// The first of `windows` that is marked as a client, XCB_WINDOW_NONE for none.
xcb_window_t firstClientOf(Connection& connection, const std::vector<xcb_window_t>& windows) {
    std::vector<PropertyRequest> requests;
    requests.reserve(windows.size());
    for (const xcb_window_t window : windows) {
        requests.push_back(askForProperty(connection, window, "WM_STATE", 0));
    }
    xcb_window_t client = XCB_WINDOW_NONE;
    for (std::size_t index = 0; index < windows.size(); ++index) {
        if (readPresence(connection, requests[index]) && client == XCB_WINDOW_NONE) {
            client = windows[index];
        }
    }
    return client;
}

std::vector<xcb_window_t> childrenOfAll(Connection& connection,
                                        const std::vector<xcb_window_t>& windows) {
    std::vector<xcb_query_tree_cookie_t> cookies;
    cookies.reserve(windows.size());
    for (const xcb_window_t window : windows) {
        cookies.push_back(xcb_query_tree(connection.get(), window));
    }
    std::vector<xcb_window_t> children;
    for (const auto cookie : cookies) {
        if (const Tree tree(xcb_query_tree_reply(connection.get(), cookie, nullptr)); tree) {
            const auto own = childrenOf(*tree);
            children.insert(children.end(), own.begin(), own.end());
        }
    }
    return children;
}

}  // namespace

xcb_window_t clientAround(Connection& connection, xcb_window_t window) {
    for (int depth = 0; depth < deepestNesting; ++depth) {
        const auto state = askForProperty(connection, window, "WM_STATE", 0);
        const Tree tree = treeOf(connection, window);
        const bool isClient = readPresence(connection, state);
        if (!tree) {
            return XCB_WINDOW_NONE;
        }
        if (isClient || tree->parent == connection.root()) {
            return isClient ? window : clientInside(connection, window);
        }
        window = tree->parent;
        if (window == XCB_WINDOW_NONE) {
            break;
        }
    }
    return XCB_WINDOW_NONE;
}

xcb_window_t clientInside(Connection& connection, xcb_window_t topLevel) {
    // Frames are at most three windows deep; what lies deeper belongs to a program.
    constexpr int deepestFrame = 3;
    std::vector<xcb_window_t> level{topLevel};
    for (int depth = 0; depth <= deepestFrame && !level.empty(); ++depth) {
        const xcb_window_t client = firstClientOf(connection, level);
        if (client != XCB_WINDOW_NONE) {
            return client;
        }
        level = childrenOfAll(connection, level);
    }
    return topLevel;
}

std::vector<xcb_window_t> topLevelsAt(Connection& connection, std::int32_t x, std::int32_t y) {
    const Tree tree = treeOf(connection, connection.root());
    if (!tree) {
        return {};
    }
    const auto children = childrenOf(*tree);
    struct Requests {
        xcb_window_t window;
        xcb_get_window_attributes_cookie_t attributes;
        xcb_get_geometry_cookie_t geometry;
    };
    std::vector<Requests> requests;
    // The server lists the lowest window first.
    const std::vector<xcb_window_t> topmostFirst(children.rbegin(), children.rend());
    requests.reserve(topmostFirst.size());
    for (const xcb_window_t window : topmostFirst) {
        requests.push_back({window, xcb_get_window_attributes(connection.get(), window),
                            xcb_get_geometry(connection.get(), window)});
    }
    std::vector<xcb_window_t> found;
    for (const Requests& request : requests) {
        const Reply<xcb_get_window_attributes_reply_t> attributes(
            xcb_get_window_attributes_reply(connection.get(), request.attributes, nullptr));
        const Reply<xcb_get_geometry_reply_t> geometry(
            xcb_get_geometry_reply(connection.get(), request.geometry, nullptr));
        if (isVisible(attributes.get()) && holds(geometry.get(), x, y)) {
            found.push_back(request.window);
        }
    }
    return found;
}

bool isVisibleWindow(Connection& connection, xcb_window_t window) {
    const Reply<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
        connection.get(), xcb_get_window_attributes(connection.get(), window), nullptr));
    return isVisible(attributes.get());
}

}  // namespace platform::x11
