#include "desktop/clipboard.h"

#include <cstring>

namespace desktop {

Clipboard::Clipboard(const std::string& displayName)
    : client_(displayName),
      window_(xcb_generate_id(client_.get())),
      property_(client_.atom("LUMAFRAME_TEST_CLIPBOARD")) {
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(client_.get(), XCB_COPY_FROM_PARENT, window_, client_.root(), -10, -10, 1, 1,
                      0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &mask);
    client_.synchronize();
}

std::vector<std::string> Clipboard::targets() {
    const auto bytes = read("TARGETS");
    std::vector<std::string> names;
    for (std::size_t index = 0; bytes && index + 4 <= bytes->size(); index += 4) {
        xcb_atom_t atom = XCB_ATOM_NONE;
        std::memcpy(&atom, bytes->data() + index, sizeof atom);
        const Reply<xcb_get_atom_name_reply_t> reply(xcb_get_atom_name_reply(
            client_.get(), xcb_get_atom_name(client_.get(), atom), nullptr));
        if (reply) {
            names.emplace_back(
                xcb_get_atom_name_name(reply.get()),
                static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get())));
        }
    }
    return names;
}

std::vector<std::uint8_t> Clipboard::takeProperty(xcb_atom_t& type) {
    const auto cookie =
        xcb_get_property(client_.get(), 1, window_, property_, XCB_ATOM_ANY, 0, 1U << 28);
    const Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(client_.get(), cookie, nullptr));
    if (!reply) {
        return {};
    }
    type = reply->type;
    const auto* bytes = static_cast<const std::uint8_t*>(xcb_get_property_value(reply.get()));
    return {bytes, bytes + xcb_get_property_value_length(reply.get())};
}

bool Clipboard::waitForNewValue(std::chrono::milliseconds limit) {
    return waitUntil(
        [this] {
            while (const auto event = client_.pollEvent()) {
                const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
                if ((event->response_type & 0x7fU) == XCB_PROPERTY_NOTIFY &&
                    change.atom == property_ && change.state == XCB_PROPERTY_NEW_VALUE) {
                    return true;
                }
            }
            return false;
        },
        limit);
}

std::optional<std::vector<std::uint8_t>> Clipboard::readPieces(std::chrono::milliseconds limit) {
    std::vector<std::uint8_t> all;
    while (waitForNewValue(limit)) {
        xcb_atom_t type = XCB_ATOM_NONE;
        const auto piece = takeProperty(type);
        if (piece.empty()) {
            return all;
        }
        all.insert(all.end(), piece.begin(), piece.end());
    }
    return std::nullopt;
}

std::optional<std::vector<std::uint8_t>> Clipboard::read(const std::string& target,
                                                         std::chrono::milliseconds limit) {
    wasIncremental_ = false;
    while (client_.pollEvent()) {
    }
    xcb_convert_selection(client_.get(), window_, client_.atom("CLIPBOARD"), client_.atom(target),
                          property_, XCB_CURRENT_TIME);
    xcb_flush(client_.get());
    std::optional<xcb_atom_t> answered;
    waitUntil(
        [&] {
            while (const auto event = client_.pollEvent()) {
                if ((event->response_type & 0x7fU) == XCB_SELECTION_NOTIFY) {
                    answered =
                        reinterpret_cast<const xcb_selection_notify_event_t&>(*event).property;
                    return true;
                }
            }
            return false;
        },
        limit);
    if (!answered || *answered == XCB_ATOM_NONE) {
        return std::nullopt;
    }
    xcb_atom_t type = XCB_ATOM_NONE;
    // Events of the announcement itself must not count as the first piece; deleting the property,
    // which asks for that piece, comes after they have been taken.
    client_.synchronize();
    while (client_.pollEvent()) {
    }
    auto bytes = takeProperty(type);
    if (type == client_.atom("INCR")) {
        wasIncremental_ = true;
        return readPieces(limit);
    }
    return bytes;
}

}  // namespace desktop
