#include "platform/x11/x11_pointer.h"

#include <xcb/xcb_cursor.h>

#include <algorithm>
#include <span>

namespace platform::x11 {

namespace {

/// The names of a shape, the one that themes of today use first; the others are those of the X
/// cursor font, which every server has.
std::span<const char* const> namesOf(overlay::Cursor cursor) {
    static constexpr const char* arrow[] = {"default", "left_ptr"};
    static constexpr const char* crosshair[] = {"crosshair", "cross"};
    static constexpr const char* pointingHand[] = {"pointer", "hand2", "hand1"};
    switch (cursor) {
        case overlay::Cursor::arrow:
            return arrow;
        case overlay::Cursor::crosshair:
            return crosshair;
        case overlay::Cursor::pointingHand:
            return pointingHand;
    }
    return arrow;
}

}  // namespace

X11Pointer::X11Pointer(Connection& connection, X11Displays& displays)
    : connection_(connection), displays_(displays) {}

X11Pointer::~X11Pointer() {
    for (const auto& [cursor, id] : loaded_) {
        if (id != XCB_CURSOR_NONE) {
            xcb_free_cursor(connection_.get(), id);
        }
    }
    if (context_ != nullptr) {
        xcb_cursor_context_free(context_);
    }
}

void X11Pointer::setCursor(overlay::Cursor cursor) {
    cursor_ = cursor;
    for (const xcb_window_t window : windows_) {
        show(window);
    }
}

std::optional<base::Point> X11Pointer::location() {
    const Reply<xcb_query_pointer_reply_t> reply(xcb_query_pointer_reply(
        connection_.get(), xcb_query_pointer(connection_.get(), connection_.root()), nullptr));
    if (!reply || reply->same_screen == 0) {
        return std::nullopt;
    }
    return displays_.layout().topLeftFromNative(NativePoint{reply->root_x, reply->root_y});
}

void X11Pointer::addWindow(xcb_window_t window) {
    windows_.push_back(window);
    show(window);
}

void X11Pointer::removeWindow(xcb_window_t window) {
    std::erase(windows_, window);
}

xcb_cursor_t X11Pointer::find(overlay::Cursor cursor) {
    const auto known = loaded_.find(cursor);
    return known != loaded_.end() ? known->second
                                  : loaded_.emplace(cursor, load(cursor)).first->second;
}

xcb_cursor_t X11Pointer::load(overlay::Cursor cursor) {
    if (context_ == nullptr) {
        auto roots = xcb_setup_roots_iterator(xcb_get_setup(connection_.get()));
        for (int skipped = 0; skipped < connection_.screenNumber() && roots.rem > 1; ++skipped) {
            xcb_screen_next(&roots);
        }
        if (xcb_cursor_context_new(connection_.get(), roots.data, &context_) < 0) {
            context_ = nullptr;
            return XCB_CURSOR_NONE;
        }
    }
    for (const char* name : namesOf(cursor)) {
        const xcb_cursor_t found = xcb_cursor_load_cursor(context_, name);
        if (found != XCB_CURSOR_NONE) {
            return found;
        }
    }
    return XCB_CURSOR_NONE;
}

void X11Pointer::show(xcb_window_t window) {
    const std::uint32_t cursor = find(cursor_);
    xcb_change_window_attributes(connection_.get(), window, XCB_CW_CURSOR, &cursor);
}

}  // namespace platform::x11
