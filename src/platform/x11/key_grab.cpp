#include "platform/x11/key_grab.h"

namespace platform::x11 {

GrabOutcome grabKey(Connection& connection, const KeyGrab& grab) {
    auto* server = connection.get();
    std::vector<xcb_void_cookie_t> cookies;
    cookies.reserve(grab.variants.size());
    for (const ModifierMask variant : grab.variants) {
        cookies.push_back(xcb_grab_key_checked(server, 0, connection.root(), variant, grab.keycode,
                                               XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
    // The first check waits for the server; by then it has answered the other requests too.
    GrabOutcome outcome = GrabOutcome::grabbed;
    for (const xcb_void_cookie_t cookie : cookies) {
        const Reply<xcb_generic_error_t> error(xcb_request_check(server, cookie));
        if (error) {
            outcome = error->error_code == XCB_ACCESS ? GrabOutcome::taken : GrabOutcome::refused;
        }
    }
    if (outcome != GrabOutcome::grabbed) {
        ungrabKey(connection, grab);
    }
    return connection.isLost() ? GrabOutcome::refused : outcome;
}

void ungrabKey(Connection& connection, const KeyGrab& grab) {
    for (const ModifierMask variant : grab.variants) {
        xcb_ungrab_key(connection.get(), grab.keycode, connection.root(), variant);
    }
    connection.flush();
}

}  // namespace platform::x11
