#include "platform/x11/overlay_focus.h"

#include <algorithm>

namespace platform::x11 {

OverlayFocus::OverlayFocus(Connection& connection) : connection_(connection) {}

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

void OverlayFocus::makeKey(xcb_window_t window) {
    const bool isKnown = std::erase(windows_, window) != 0;
    if (openWindows_ == 0) {
        windows_.clear();
        previous_.reset();
    }
    openWindows_ += isKnown ? 0 : 1;
    windows_.push_back(window);
}

void OverlayFocus::take() {
    if (openWindows_ == 0) {
        return;
    }
    const auto cookie = xcb_get_input_focus(connection_.get());
    // The moment of the shortcut would not do: the server ignores a request that is older than the
    // last change of the focus, which may be somebody's click that we never saw.
    const xcb_timestamp_t now = connection_.serverTime();
    const auto holder = holderOf(cookie);
    if (!previous_) {
        previous_ = holder;
    }
    xcb_set_input_focus(connection_.get(), XCB_INPUT_FOCUS_POINTER_ROOT, windows_.back(), now);
    connection_.flush();
}

void OverlayFocus::release(xcb_window_t window) {
    if (!isOurs(window) || --openWindows_ > 0) {
        return;
    }
    if (previous_) {
        const auto cookie = xcb_get_input_focus(connection_.get());
        const xcb_timestamp_t now = connection_.serverTime();
        const auto holder = holderOf(cookie);
        if (holder && isOurs(holder->window)) {
            // Fails, and changes nothing, when that window has gone.
            xcb_set_input_focus(connection_.get(), previous_->revertTo, previous_->window, now);
        }
    }
    windows_.clear();
}

}  // namespace platform::x11
