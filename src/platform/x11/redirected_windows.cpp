#include "platform/x11/redirected_windows.h"

#include <xcb/composite.h>

#include <algorithm>
#include <utility>

#include "platform/x11/composite_extension.h"
#include "platform/x11/native_region.h"
#include "platform/x11/window_owner.h"

namespace platform::x11 {

namespace {

/// What the displays show of the window behind those in front of it.
std::vector<NativeRect> visiblePartsOf(const NativeRect& frame,
                                       const std::vector<NativeRect>& displays,
                                       const std::vector<NativeRect>& inFront) {
    NativeRegion hidden(frame);
    for (const NativeRect& display : displays) {
        hidden.subtract(display);
    }
    NativeRegion visible(frame);
    for (const NativeRect& part : hidden.parts()) {
        visible.subtract(part);
    }
    for (const NativeRect& other : inFront) {
        visible.subtract(other);
    }
    return visible.parts();
}

}  // namespace

bool KeptWindow::isWhole() const {
    return visibleParts.size() == 1 && visibleParts.front() == frame.topLevel();
}

std::vector<KeptWindow> windowsToKeep(const std::vector<ListedWindow>& windows,
                                      std::int32_t processID,
                                      const std::vector<NativeRect>& displays) {
    std::vector<KeptWindow> kept;
    std::vector<NativeRect> inFront;
    for (const ListedWindow& window : windows) {
        if (window.presence != WindowPresence::onScreen) {
            continue;
        }
        const NativeRect topLevel = window.frame.topLevel();
        if (window.owner.processID == processID) {
            kept.push_back(
                {window.topLevel, window.frame, visiblePartsOf(topLevel, displays, inFront)});
        }
        inFront.push_back(topLevel);
    }
    return kept;
}

std::shared_ptr<const RedirectedWindows> RedirectedWindows::ofProcess(
    Connection& connection, std::int32_t processID, const std::vector<NativeRect>& displays) {
    if (!announceComposite(connection)) {
        return nullptr;
    }
    auto windows = listWindows(connection);
    std::erase_if(windows,
                  [&](const ListedWindow& window) { return isOwnWindow(connection, window.id); });
    auto kept = windowsToKeep(windows, processID, displays);
    if (kept.empty()) {
        return nullptr;
    }
    return std::shared_ptr<const RedirectedWindows>(
        new RedirectedWindows(connection, std::move(kept)));
}

RedirectedWindows::RedirectedWindows(Connection& connection, std::vector<KeptWindow> windows)
    : connection_(connection), windows_(std::move(windows)) {
    for (const KeptWindow& window : windows_) {
        if (!window.isWhole()) {
            xcb_composite_redirect_window(connection_.get(), window.topLevel,
                                          XCB_COMPOSITE_REDIRECT_AUTOMATIC);
        }
    }
    connection_.flush();
}

RedirectedWindows::~RedirectedWindows() {
    for (const KeptWindow& window : windows_) {
        if (!window.isWhole()) {
            // An error for a window that is gone, which nobody looks at.
            xcb_composite_unredirect_window(connection_.get(), window.topLevel,
                                            XCB_COMPOSITE_REDIRECT_AUTOMATIC);
        }
    }
    connection_.flush();
}

const KeptWindow* RedirectedWindows::find(xcb_window_t topLevel) const {
    const auto found =
        std::find_if(windows_.begin(), windows_.end(),
                     [&](const KeptWindow& window) { return window.topLevel == topLevel; });
    return found == windows_.end() ? nullptr : &*found;
}

}  // namespace platform::x11
