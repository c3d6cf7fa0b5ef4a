#include "platform/x11/compositor.h"

namespace platform::x11 {

bool isCompositorRunning(Connection& connection) {
    const xcb_atom_t selection =
        connection.atom("_NET_WM_CM_S" + std::to_string(connection.screenNumber()));
    const Reply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        connection.get(), xcb_get_selection_owner(connection.get(), selection), nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

}  // namespace platform::x11
