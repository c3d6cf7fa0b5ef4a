#include "platform/x11/window_list.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "platform/x11/top_levels.h"
#include "platform/x11/window_property.h"

namespace platform::x11 {

namespace {

constexpr std::uint32_t everyDesktop = 0xffffffff;
/// More windows than this are not read from the window manager's list.
constexpr std::uint32_t longestListBytes = 4 * 16384;

struct WindowRequests {
    PropertyRequest types;
    PropertyRequest states;
    PropertyRequest desktop;
    PropertyRequest decoration;
    PropertyRequest ownShadow;
    xcb_get_geometry_cookie_t geometry;
    xcb_translate_coordinates_cookie_t place;
};

WindowRequests askForWindow(Connection& connection, xcb_window_t window) {
    return {askForProperty(connection, window, "_NET_WM_WINDOW_TYPE"),
            askForProperty(connection, window, "_NET_WM_STATE"),
            askForProperty(connection, window, "_NET_WM_DESKTOP"),
            askForProperty(connection, window, "_NET_FRAME_EXTENTS"),
            askForProperty(connection, window, "_GTK_FRAME_EXTENTS"),
            xcb_get_geometry(connection.get(), window),
            xcb_translate_coordinates(connection.get(), window, connection.root(), 0, 0)};
}

std::optional<FrameExtents> readExtents(Connection& connection, PropertyRequest request) {
    const auto numbers = readNumbers(connection, request, XCB_ATOM_CARDINAL);
    // A window is at most 65535 wide.
    const bool isSane =
        numbers.size() == 4 && std::all_of(numbers.begin(), numbers.end(),
                                           [](std::uint32_t number) { return number <= 0xffff; });
    if (!isSane) {
        return std::nullopt;
    }
    const auto at = [&](std::size_t index) { return static_cast<std::int32_t>(numbers[index]); };
    return FrameExtents{at(0), at(1), at(2), at(3)};
}

WindowFrame readFrame(Connection& connection, const WindowRequests& requests, xcb_window_t window,
                      const TopLevel& topLevel) {
    WindowMeasures measures{.topLevel = topLevel.frame};
    measures.decoration = readExtents(connection, requests.decoration);
    measures.ownShadow = readExtents(connection, requests.ownShadow).value_or(FrameExtents{});
    const Reply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(connection.get(), requests.geometry, nullptr));
    const Reply<xcb_translate_coordinates_reply_t> place(
        xcb_translate_coordinates_reply(connection.get(), requests.place, nullptr));
    if (geometry && place && window != topLevel.id) {
        measures.client = NativeRect{place->dst_x, place->dst_y, geometry->width, geometry->height};
    }
    return frameOf(measures);
}

WindowPresence presenceOf(Connection& connection, const TopLevel& topLevel,
                          const std::vector<std::uint32_t>& states,
                          std::optional<std::uint32_t> desktop,
                          std::optional<std::uint32_t> currentDesktop) {
    const auto has = [&](const char* state) {
        return std::find(states.begin(), states.end(), connection.atom(state)) != states.end();
    };
    // Of a shaded window the title bar shows, hidden or not.
    const bool isHidden = has("_NET_WM_STATE_HIDDEN") && !has("_NET_WM_STATE_SHADED");
    const bool isOnOtherDesktop =
        desktop && currentDesktop && *desktop != everyDesktop && *desktop != *currentDesktop;
    return topLevel.mapping == TopLevel::Mapping::unmapped || isHidden || isOnOtherDesktop
               ? WindowPresence::elsewhere
               : WindowPresence::onScreen;
}

/// The windows that a list of the window manager names, each once.
std::vector<xcb_window_t> namedWindows(Connection& connection, PropertyRequest list) {
    std::vector<xcb_window_t> windows;
    for (const std::uint32_t window : readNumbers(connection, list, XCB_ATOM_WINDOW)) {
        if (std::find(windows.begin(), windows.end(), window) == windows.end()) {
            windows.push_back(window);
        }
    }
    return windows;
}

/// The windows that the window manager lists; bottom to top as far as it says the order.
struct ManagedWindows {
    std::vector<xcb_window_t> windows;
    enum class Order { known, partly } order = Order::known;
};

ManagedWindows managedWindows(Connection& connection) {
    const auto askForList = [&](const char* property) {
        return askForProperty(connection, connection.root(), property, longestListBytes);
    };
    const PropertyRequest stacking = askForList("_NET_CLIENT_LIST_STACKING");
    const PropertyRequest all = askForList("_NET_CLIENT_LIST");
    ManagedWindows managed{namedWindows(connection, stacking)};
    // xfwm4 names no window in the first list before it has restacked one.
    for (const xcb_window_t window : namedWindows(connection, all)) {
        auto& windows = managed.windows;
        if (std::find(windows.begin(), windows.end(), window) == windows.end()) {
            windows.push_back(window);
            managed.order = ManagedWindows::Order::partly;
        }
    }
    return managed;
}

/// The mapped top-level windows in which no listed window lies.
std::vector<xcb_window_t> unlistedWindows(const std::vector<TopLevel>& tops,
                                          const std::map<xcb_window_t, xcb_window_t>& topLevelOf) {
    std::vector<xcb_window_t> windows;
    for (const TopLevel& top : tops) {
        const bool isFrame = std::any_of(topLevelOf.begin(), topLevelOf.end(),
                                         [&](const auto& entry) { return entry.second == top.id; });
        if (!isFrame && top.mapping == TopLevel::Mapping::mapped) {
            windows.push_back(top.id);
        }
    }
    return windows;
}

/// Bottom to top, as their top-level windows lie.
void sortByStack(std::vector<xcb_window_t>& windows, const std::vector<xcb_window_t>& stack,
                 const std::map<xcb_window_t, xcb_window_t>& topLevelOf) {
    const auto heightOf = [&](xcb_window_t window) {
        const auto topLevel = topLevelOf.find(window);
        return topLevel == topLevelOf.end()
                   ? stack.end()
                   : std::find(stack.begin(), stack.end(), topLevel->second);
    };
    std::stable_sort(windows.begin(), windows.end(), [&](xcb_window_t first, xcb_window_t second) {
        return heightOf(first) < heightOf(second);
    });
}

}  // namespace

std::vector<ListedWindow> listWindows(Connection& connection) {
    const PropertyRequest currentDesktopRequest =
        askForProperty(connection, connection.root(), "_NET_CURRENT_DESKTOP");
    auto [managed, orderOfManaged] = managedWindows(connection);
    const auto currentDesktop = readNumber(connection, currentDesktopRequest, XCB_ATOM_CARDINAL);
    const auto tops = topLevels(connection);
    auto topLevelOf = topLevelsOf(connection, managed, tops);
    const auto unlisted = unlistedWindows(tops, topLevelOf);
    std::map<xcb_window_t, const TopLevel*> topOf;
    std::vector<xcb_window_t> stack;
    for (const TopLevel& top : tops) {
        stack.push_back(top.id);
        topOf[top.id] = &top;
    }
    if (orderOfManaged == ManagedWindows::Order::partly) {
        sortByStack(managed, stack, topLevelOf);
    }
    auto order = mergeStacking(managed, unlisted, stack, topLevelOf);
    std::reverse(order.begin(), order.end());
    for (const xcb_window_t window : unlisted) {
        topLevelOf[window] = window;
    }

    std::vector<WindowRequests> requests;
    requests.reserve(order.size());
    for (const xcb_window_t window : order) {
        requests.push_back(askForWindow(connection, window));
    }
    auto owners = ownersOf(connection, order);
    std::vector<ListedWindow> windows;
    for (std::size_t index = 0; index < order.size(); ++index) {
        const TopLevel& top = *topOf[topLevelOf[order[index]]];
        const auto types = readNumbers(connection, requests[index].types, XCB_ATOM_ATOM);
        const auto states = readNumbers(connection, requests[index].states, XCB_ATOM_ATOM);
        const auto desktop = readNumber(connection, requests[index].desktop, XCB_ATOM_CARDINAL);
        const auto frame = readFrame(connection, requests[index], order[index], top);
        const auto management =
            top.override == TopLevel::Override::redirect && top.id == order[index]
                ? Management::unmanaged
                : Management::managed;
        windows.push_back({order[index], top.id, frame, kindOf(connection, types, management),
                           presenceOf(connection, top, states, desktop, currentDesktop),
                           std::move(owners[index])});
    }
    return windows;
}

}  // namespace platform::x11
