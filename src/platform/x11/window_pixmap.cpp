#include "platform/x11/window_pixmap.h"

#include <xcb/composite.h>

#include <utility>

#include "platform/x11/composite_extension.h"

namespace platform::x11 {

base::Result<std::optional<WindowPixmap>> WindowPixmap::of(Connection& connection,
                                                           xcb_window_t topLevel) {
    auto* const server = connection.get();
    const Reply<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
        server, xcb_get_window_attributes(server, topLevel), nullptr));
    if (!attributes) {
        return base::Error{base::ErrorKind::notFound, "The window is gone."};
    }
    if (attributes->map_state != XCB_MAP_STATE_VIEWABLE) {
        return base::Error{base::ErrorKind::unavailable,
                           "The window is minimised or on another desktop."};
    }
    if (!announceComposite(connection)) {
        return std::optional<WindowPixmap>();
    }
    const xcb_pixmap_t id = xcb_generate_id(server);
    const auto naming = xcb_composite_name_window_pixmap_checked(server, topLevel, id);
    const auto geometryCookie = xcb_get_geometry(server, id);
    const Reply<xcb_generic_error_t> error(xcb_request_check(server, naming));
    const Reply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(server, geometryCookie, nullptr));
    if (error || !geometry) {
        return std::optional<WindowPixmap>();
    }
    WindowPixmap pixmap(connection);
    pixmap.id_ = id;
    pixmap.visual_ = attributes->visual;
    pixmap.width_ = geometry->width;
    pixmap.height_ = geometry->height;
    return std::optional<WindowPixmap>(std::move(pixmap));
}

WindowPixmap::WindowPixmap(WindowPixmap&& other) noexcept
    : connection_(other.connection_),
      id_(std::exchange(other.id_, static_cast<xcb_pixmap_t>(XCB_NONE))),
      visual_(other.visual_),
      width_(other.width_),
      height_(other.height_) {}

WindowPixmap& WindowPixmap::operator=(WindowPixmap&& other) noexcept {
    std::swap(connection_, other.connection_);
    std::swap(id_, other.id_);
    std::swap(visual_, other.visual_);
    std::swap(width_, other.width_);
    std::swap(height_, other.height_);
    return *this;
}

WindowPixmap::~WindowPixmap() {
    if (id_ != XCB_NONE) {
        xcb_free_pixmap(connection_->get(), id_);
    }
}

}  // namespace platform::x11
