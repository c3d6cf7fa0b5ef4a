#include "platform/x11/x11_access.h"

#include <xcb/randr.h>

#include <string_view>

#include "platform/x11/key_grab.h"

namespace platform::x11 {

namespace {

/// Every modifier at once, with the last key code, which no keyboard has: nobody presses that.
constexpr ModifierMask everyModifier = 0xff;
/// The name of an extension of Xwayland, and of all its outputs: of those before version 23.1,
/// which have no such extension, too.
constexpr std::string_view xwayland = "XWAYLAND";

bool hasXwaylandExtension(const Connection& connection) {
    const Reply<xcb_query_extension_reply_t> reply(xcb_query_extension_reply(
        connection.get(),
        xcb_query_extension(connection.get(), static_cast<std::uint16_t>(xwayland.size()),
                            xwayland.data()),
        nullptr));
    return reply && reply->present != 0;
}

bool hasXwaylandOutput(const Connection& connection) {
    // An untrusted client has no RandR, and a request of it would end the connection.
    const xcb_query_extension_reply_t* randr =
        xcb_get_extension_data(connection.get(), &xcb_randr_id);
    if (randr == nullptr || randr->present == 0) {
        return false;
    }
    const Reply<xcb_randr_get_screen_resources_current_reply_t> resources(
        xcb_randr_get_screen_resources_current_reply(
            connection.get(),
            xcb_randr_get_screen_resources_current(connection.get(), connection.root()), nullptr));
    if (!resources || resources->num_outputs == 0) {
        return false;
    }
    const xcb_randr_output_t output =
        *xcb_randr_get_screen_resources_current_outputs(resources.get());
    const Reply<xcb_randr_get_output_info_reply_t> info(xcb_randr_get_output_info_reply(
        connection.get(),
        xcb_randr_get_output_info(connection.get(), output, resources->config_timestamp), nullptr));
    return info && std::string_view(
                       reinterpret_cast<const char*>(xcb_randr_get_output_info_name(info.get())),
                       info->name_len)
                       .starts_with(xwayland);
}

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
        isXwayland_ = hasXwaylandExtension(connection_) || hasXwaylandOutput(connection_);
    }
    return *isXwayland_;
}

}  // namespace platform::x11
