#include "platform/x11/top_levels.h"

#include <algorithm>
#include <set>
#include <utility>

namespace platform::x11 {

namespace {

/// Frames are nested once or twice; a loop that somebody builds meanwhile must end.
constexpr int deepestNesting = 8;

struct TopLevelRequests {
    xcb_window_t id;
    xcb_get_window_attributes_cookie_t attributes;
    xcb_get_geometry_cookie_t geometry;
};

std::vector<xcb_window_t> childrenOfRoot(Connection& connection) {
    const Reply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(
        connection.get(), xcb_query_tree(connection.get(), connection.root()), nullptr));
    if (!tree) {
        return {};
    }
    const xcb_window_t* first = xcb_query_tree_children(tree.get());
    return {first, first + xcb_query_tree_children_length(tree.get())};
}

std::optional<TopLevel> read(Connection& connection, const TopLevelRequests& requests) {
    const Reply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(connection.get(), requests.attributes, nullptr));
    const Reply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(connection.get(), requests.geometry, nullptr));
    if (!attributes || !geometry || attributes->_class == XCB_WINDOW_CLASS_INPUT_ONLY) {
        return std::nullopt;
    }
    const int border = 2 * geometry->border_width;
    return TopLevel{requests.id,
                    {geometry->x, geometry->y, geometry->width + border, geometry->height + border},
                    attributes->map_state == XCB_MAP_STATE_UNMAPPED ? TopLevel::Mapping::unmapped
                                                                    : TopLevel::Mapping::mapped,
                    attributes->override_redirect != 0 ? TopLevel::Override::redirect
                                                       : TopLevel::Override::none};
}

/// The parents of `windows`; those that are gone are missing.
std::map<xcb_window_t, xcb_window_t> parentsOf(Connection& connection,
                                               const std::set<xcb_window_t>& windows) {
    std::vector<std::pair<xcb_window_t, xcb_query_tree_cookie_t>> cookies;
    cookies.reserve(windows.size());
    for (const xcb_window_t window : windows) {
        cookies.emplace_back(window, xcb_query_tree(connection.get(), window));
    }
    std::map<xcb_window_t, xcb_window_t> parents;
    for (const auto& [window, cookie] : cookies) {
        const Reply<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(connection.get(), cookie, nullptr));
        if (tree && tree->parent != XCB_WINDOW_NONE) {
            parents[window] = tree->parent;
        }
    }
    return parents;
}

}  // namespace

std::vector<TopLevel> topLevels(Connection& connection) {
    std::vector<TopLevelRequests> requests;
    for (const xcb_window_t window : childrenOfRoot(connection)) {
        requests.push_back({window, xcb_get_window_attributes(connection.get(), window),
                            xcb_get_geometry(connection.get(), window)});
    }
    std::vector<TopLevel> windows;
    for (const TopLevelRequests& request : requests) {
        if (const auto window = read(connection, request)) {
            windows.push_back(*window);
        }
    }
    return windows;
}

std::map<xcb_window_t, xcb_window_t> topLevelsOf(Connection& connection,
                                                 const std::vector<xcb_window_t>& windows,
                                                 const std::vector<TopLevel>& topLevels) {
    std::set<xcb_window_t> tops;
    for (const TopLevel& topLevel : topLevels) {
        tops.insert(topLevel.id);
    }
    std::map<xcb_window_t, xcb_window_t> found;
    std::map<xcb_window_t, xcb_window_t> ancestors;
    for (const xcb_window_t window : windows) {
        ancestors[window] = window;
    }
    for (int level = 0; level < deepestNesting && !ancestors.empty(); ++level) {
        std::set<xcb_window_t> asked;
        for (auto entry = ancestors.begin(); entry != ancestors.end();) {
            if (tops.contains(entry->second)) {
                found.insert(*entry);
                entry = ancestors.erase(entry);
            } else {
                asked.insert(entry->second);
                ++entry;
            }
        }
        const auto parents = parentsOf(connection, asked);
        for (auto entry = ancestors.begin(); entry != ancestors.end();) {
            const auto parent = parents.find(entry->second);
            if (parent == parents.end()) {
                entry = ancestors.erase(entry);
            } else {
                entry->second = parent->second;
                ++entry;
            }
        }
    }
    return found;
}

std::vector<xcb_window_t> mergeStacking(const std::vector<xcb_window_t>& windows,
                                        const std::vector<xcb_window_t>& others,
                                        const std::vector<xcb_window_t>& stack,
                                        const std::map<xcb_window_t, xcb_window_t>& topLevelOf) {
    std::map<xcb_window_t, std::size_t> heights;
    for (std::size_t height = 0; height < stack.size(); ++height) {
        heights[stack[height]] = height;
    }
    std::vector<xcb_window_t> merged;
    std::vector<std::size_t> mergedHeights;
    for (const xcb_window_t window : windows) {
        const auto topLevel = topLevelOf.find(window);
        if (topLevel != topLevelOf.end() && heights.contains(topLevel->second)) {
            merged.push_back(window);
            mergedHeights.push_back(heights[topLevel->second]);
        }
    }
    std::vector<xcb_window_t> sorted = others;
    std::sort(sorted.begin(), sorted.end(), [&](xcb_window_t first, xcb_window_t second) {
        return heights[first] < heights[second];
    });
    for (const xcb_window_t other : sorted) {
        const auto covered =
            std::find_if(mergedHeights.rbegin(), mergedHeights.rend(),
                         [&](std::size_t height) { return height < heights[other]; });
        const auto index = std::distance(covered, mergedHeights.rend());
        merged.insert(merged.begin() + index, other);
        mergedHeights.insert(mergedHeights.begin() + index, heights[other]);
    }
    return merged;
}

}  // namespace platform::x11
