#include "desktop/x_client.h"

#include <cstring>
#include <stdexcept>
#include <string_view>

namespace desktop {

namespace {

/// Instance and class, each with its zero byte.
constexpr std::string_view overlayClassText{"lumaframe\0Lumaframe\0", 20};
const std::vector<std::uint8_t> overlayClass(overlayClassText.begin(), overlayClassText.end());

}  // namespace

XClient::XClient(const std::string& displayName) {
    int screenNumber = 0;
    connection_ = xcb_connect(displayName.empty() ? nullptr : displayName.c_str(), &screenNumber);
    if (xcb_connection_has_error(connection_) != 0) {
        xcb_disconnect(connection_);
        throw std::runtime_error("The X server " + displayName + " does not answer.");
    }
    screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
}

XClient::~XClient() {
    xcb_disconnect(connection_);
}

xcb_atom_t XClient::atom(const std::string& name) const {
    const auto cookie =
        xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_, cookie, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

xcb_window_t XClient::selectionOwner(const std::string& selection) const {
    const Reply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        connection_, xcb_get_selection_owner(connection_, atom(selection)), nullptr));
    return reply ? reply->owner : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}

std::optional<std::vector<std::uint8_t>> XClient::property(xcb_window_t window,
                                                           const std::string& name) const {
    const auto cookie =
        xcb_get_property(connection_, 0, window, atom(name), XCB_ATOM_ANY, 0, 1U << 24);
    const Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection_, cookie, nullptr));
    if (!reply || reply->type == XCB_ATOM_NONE) {
        return std::nullopt;
    }
    const auto* bytes = static_cast<const std::uint8_t*>(xcb_get_property_value(reply.get()));
    return std::vector<std::uint8_t>(bytes, bytes + xcb_get_property_value_length(reply.get()));
}

std::optional<std::uint32_t> XClient::value(xcb_window_t window, const std::string& name) const {
    const auto bytes = property(window, name);
    if (!bytes || bytes->size() < 4) {
        return std::nullopt;
    }
    std::uint32_t number = 0;
    std::memcpy(&number, bytes->data(), sizeof number);
    return number;
}

void XClient::synchronize() const {
    const Reply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

Reply<xcb_generic_event_t> XClient::pollEvent() const {
    return Reply<xcb_generic_event_t>(xcb_poll_for_event(connection_));
}

xcb_window_t XClient::inputFocus() const {
    const Reply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    return reply ? reply->focus : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}

std::vector<xcb_window_t> XClient::mappedTopLevels() const {
    std::vector<xcb_window_t> mapped;
    const Reply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection_, xcb_query_tree(connection_, root()), nullptr));
    if (!tree) {
        return mapped;
    }
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    for (int index = 0; index < xcb_query_tree_children_length(tree.get()); ++index) {
        const Reply<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
            connection_, xcb_get_window_attributes(connection_, children[index]), nullptr));
        if (attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
            attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT) {
            mapped.push_back(children[index]);
        }
    }
    return mapped;
}

std::vector<xcb_window_t> XClient::mappedOverlays(int x, int y, int width, int height) const {
    std::vector<xcb_window_t> overlays;
    for (const xcb_window_t window : mappedTopLevels()) {
        const Reply<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
            connection_, xcb_get_window_attributes(connection_, window), nullptr));
        const Reply<xcb_get_geometry_reply_t> geometry(
            xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr));
        if (attributes && geometry && attributes->override_redirect != 0 && geometry->x == x &&
            geometry->y == y && geometry->width == width && geometry->height == height &&
            property(window, "WM_CLASS") == overlayClass) {
            overlays.push_back(window);
        }
    }
    return overlays;
}

}  // namespace desktop
