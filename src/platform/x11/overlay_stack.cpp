#include "platform/x11/overlay_stack.h"

#include <algorithm>

namespace platform::x11 {

namespace {

constexpr int maximumRaises = 40;

}  // namespace

OverlayStack::OverlayStack(Connection& connection) : connection_(connection) {}

bool OverlayStack::isOurs(xcb_window_t window) const {
    return std::find(windows_.begin(), windows_.end(), window) != windows_.end();
}

void OverlayStack::add(xcb_window_t window) {
    if (windows_.empty()) {
        raises_ = 0;
        rootEvents_ = connection_.selectRootEvents(XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
        subscription_ = connection_.subscribe(
            [this](const xcb_generic_event_t& event) { return handle(event); });
    }
    windows_.push_back(window);
}

void OverlayStack::remove(xcb_window_t window) {
    std::erase(windows_, window);
    if (windows_.empty()) {
        rootEvents_ = {};
        subscription_ = {};
    }
}

Connection::EventVerdict OverlayStack::handle(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7F) {
        case XCB_CONFIGURE_NOTIFY: {
            const auto& change = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
            if (change.event == connection_.root()) {
                noteChange(change.window);
            }
            break;
        }
        case XCB_MAP_NOTIFY: {
            const auto& change = reinterpret_cast<const xcb_map_notify_event_t&>(event);
            if (change.event == connection_.root()) {
                noteChange(change.window);
            }
            break;
        }
        default:
            break;
    }
    return Connection::EventVerdict::pass;
}

void OverlayStack::noteChange(xcb_window_t window) {
    if (isOurs(window)) {
        ++raises_;
        return;
    }
    if (raises_ >= maximumRaises) {
        return;
    }
    for (const xcb_window_t ours : windows_) {
        // Does nothing, and is not reported, unless another window really covers it.
        const std::uint32_t mode = XCB_STACK_MODE_TOP_IF;
        xcb_configure_window(connection_.get(), ours, XCB_CONFIG_WINDOW_STACK_MODE, &mode);
    }
}

}  // namespace platform::x11
