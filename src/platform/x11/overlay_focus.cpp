#include "platform/x11/overlay_focus.h"

#include <algorithm>
#include <utility>

namespace platform::x11 {

OverlayFocus::OverlayFocus(Connection& connection, IsNeeded isNeeded)
    : connection_(connection), isNeeded_(std::move(isNeeded)) {}

std::optional<OverlayFocus::Holder> OverlayFocus::holderOf(
    xcb_get_input_focus_cookie_t cookie) const {
    const Reply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection_.get(), cookie, nullptr));
    if (!reply) {
        return std::nullopt;
    }
    return Holder{reply->focus, reply->revert_to};
}

bool OverlayFocus::isOurs(xcb_window_t window) const {
    return std::find(windows_.begin(), windows_.end(), window) != windows_.end();
}

void OverlayFocus::take(xcb_window_t window) {
    if (isNeeded_ && !isNeeded_()) {
        return;
    }
    const auto cookie = xcb_get_input_focus(connection_.get());
    // The moment of the shortcut would not do: the server ignores a request that is older than the
    // last change of the focus, which may be somebody's click that we never saw.
    const xcb_timestamp_t now = connection_.serverTime();
    const auto holder = holderOf(cookie);
    if (!isOurs(window)) {
        if (openWindows_ == 0) {
            windows_.clear();
            previous_ = holder;
        }
        windows_.push_back(window);
        ++openWindows_;
    }
    xcb_set_input_focus(connection_.get(), XCB_INPUT_FOCUS_POINTER_ROOT, window, now);
}

void OverlayFocus::release(xcb_window_t window) {
    if (!isOurs(window) || --openWindows_ > 0) {
        return;
    }
    const auto cookie = xcb_get_input_focus(connection_.get());
    const xcb_timestamp_t now = connection_.serverTime();
    const auto holder = holderOf(cookie);
    if (holder && isOurs(holder->window) && previous_) {
        // Fails, and changes nothing, when that window has gone.
        xcb_set_input_focus(connection_.get(), previous_->revertTo, previous_->window, now);
    }
    windows_.clear();
}

}  // namespace platform::x11
