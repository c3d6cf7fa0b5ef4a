#include "platform/x11/x11_snapshot.h"

#include <array>

namespace platform::x11 {

std::shared_ptr<const X11Snapshot> X11Snapshot::take(Connection& connection,
                                                     const NativeRect& frame) {
    return std::shared_ptr<const X11Snapshot>(new X11Snapshot(connection, frame));
}

X11Snapshot::X11Snapshot(Connection& connection, const NativeRect& frame)
    : connection_(connection), pixmap_(xcb_generate_id(connection.get())), frame_(frame) {
    auto* const server = connection.get();
    const auto width = static_cast<std::uint16_t>(frame.width);
    const auto height = static_cast<std::uint16_t>(frame.height);
    creation_ = xcb_create_pixmap_checked(server, connection.screen().root_depth, pixmap_,
                                          connection.root(), width, height);
    const xcb_gcontext_t context = xcb_generate_id(server);
    const std::array<std::uint32_t, 2> values{XCB_SUBWINDOW_MODE_INCLUDE_INFERIORS, 0};
    xcb_create_gc(server, context, connection.root(),
                  XCB_GC_SUBWINDOW_MODE | XCB_GC_GRAPHICS_EXPOSURES, values.data());
    xcb_copy_area(server, connection.root(), pixmap_, context, static_cast<std::int16_t>(frame.x),
                  static_cast<std::int16_t>(frame.y), 0, 0, width, height);
    xcb_free_gc(server, context);
}

X11Snapshot::~X11Snapshot() {
    if (state_ == State::unknown) {
        xcb_discard_reply(connection_.get(), creation_.sequence);
    }
    xcb_free_pixmap(connection_.get(), pixmap_);
}

bool X11Snapshot::isTaken() const {
    if (state_ == State::unknown) {
        const Reply<xcb_generic_error_t> error(xcb_request_check(connection_.get(), creation_));
        state_ = error ? State::refused : State::taken;
    }
    return state_ == State::taken;
}

}  // namespace platform::x11
