#include "platform/x11/redirected_windows.h"

#include <xcb/composite.h>

#include <algorithm>
#include <utility>

#include "platform/x11/composite_extension.h"
#include "platform/x11/native_region.h"
#include "platform/x11/window_owner.h"

namespace platform::x11 {

std::vector<xcb_window_t> coveredWindows(const std::vector<ListedWindow>& windows,
                                         std::int32_t processID, const NativeRect& screen) {
    std::vector<xcb_window_t> covered;
    std::vector<NativeRect> inFront;
    for (const ListedWindow& window : windows) {
        if (window.presence != WindowPresence::onScreen) {
            continue;
        }
        const bool isCovered =
            intersection(window.frame, screen) != window.frame ||
            std::any_of(inFront.begin(), inFront.end(), [&](const NativeRect& other) {
                return !intersection(window.frame, other).isEmpty();
            });
        if (isCovered && window.owner.processID == processID) {
            covered.push_back(window.topLevel);
        }
        inFront.push_back(window.frame);
    }
    return covered;
}

std::shared_ptr<const RedirectedWindows> RedirectedWindows::ofProcess(Connection& connection,
                                                                      std::int32_t processID) {
    if (!announceComposite(connection)) {
        return nullptr;
    }
    const Reply<xcb_get_geometry_reply_t> root(xcb_get_geometry_reply(
        connection.get(), xcb_get_geometry(connection.get(), connection.root()), nullptr));
    if (!root) {
        return nullptr;
    }
    auto windows = listWindows(connection);
    std::erase_if(windows,
                  [&](const ListedWindow& window) { return isOwnWindow(connection, window.id); });
    auto topLevels = coveredWindows(windows, processID, {0, 0, root->width, root->height});
    if (topLevels.empty()) {
        return nullptr;
    }
    return std::shared_ptr<const RedirectedWindows>(
        new RedirectedWindows(connection, std::move(topLevels)));
}

RedirectedWindows::RedirectedWindows(Connection& connection, std::vector<xcb_window_t> topLevels)
    : connection_(connection), topLevels_(std::move(topLevels)) {
    for (const xcb_window_t window : topLevels_) {
        xcb_composite_redirect_window(connection_.get(), window, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
    }
    connection_.flush();
}

RedirectedWindows::~RedirectedWindows() {
    for (const xcb_window_t window : topLevels_) {
        // An error for a window that is gone, which nobody looks at.
        xcb_composite_unredirect_window(connection_.get(), window,
                                        XCB_COMPOSITE_REDIRECT_AUTOMATIC);
    }
    connection_.flush();
}

}  // namespace platform::x11
