#include "platform/x11/x11_access.h"

#include <string_view>

#include "platform/x11/key_grab.h"

namespace platform::x11 {

namespace {

/// Every modifier at once, with the last key code, which no keyboard has: nobody presses that.
constexpr ModifierMask everyModifier = 0xff;
constexpr std::string_view xwaylandExtension = "XWAYLAND";

}  // namespace

bool X11Access::canReadScreen() const {
    const auto cookie = xcb_get_image(connection_.get(), XCB_IMAGE_FORMAT_Z_PIXMAP,
                                      connection_.root(), 0, 0, 1, 1, ~0U);
    xcb_generic_error_t* error = nullptr;
    const Reply<xcb_get_image_reply_t> reply(
        xcb_get_image_reply(connection_.get(), cookie, &error));
    std::free(error);
    return reply != nullptr;
}

bool X11Access::canGrabKeys() const {
    const KeyGrab grab{xcb_get_setup(connection_.get())->max_keycode, {everyModifier}};
    if (grabKey(connection_, grab) != GrabOutcome::grabbed) {
        return false;
    }
    ungrabKey(connection_, grab);
    return true;
}

bool X11Access::isXwayland() const {
    if (!isXwayland_) {
        const auto cookie = xcb_query_extension(
            connection_.get(), static_cast<std::uint16_t>(xwaylandExtension.size()),
            xwaylandExtension.data());
        const Reply<xcb_query_extension_reply_t> reply(
            xcb_query_extension_reply(connection_.get(), cookie, nullptr));
        isXwayland_ = reply && reply->present != 0;
    }
    return *isXwayland_;
}

}  // namespace platform::x11
