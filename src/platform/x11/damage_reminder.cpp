#include "platform/x11/damage_reminder.h"

#include <xcb/damage.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <string>
#include <utility>

#include "platform/x11/native_region.h"

namespace platform::x11 {

namespace {

constexpr const char* target = "TIMESTAMP";
constexpr const char* answerProperty = "_LUMAFRAME_BETWEEN_FRAMES";

std::string selectionName(const char* prefix, const Connection& connection) {
    return prefix + std::to_string(connection.screenNumber());
}

}  // namespace

DamageReminder::DamageReminder(Connection& connection)
    : connection_(connection),
      subscription_(connection.subscribe([this](const xcb_generic_event_t& event) {
          handle(event);
          return Connection::EventVerdict::pass;
      })) {}

void DamageReminder::painted(xcb_window_t window, const NativeRect& area) {
    auto known = std::find_if(windows_.begin(), windows_.end(),
                              [&](const Window& candidate) { return candidate.id == window; });
    if (known == windows_.end()) {
        known = windows_.insert(known, {.id = window, .role = compositorRole()});
    }
    if (known->role == Role::other) {
        return;
    }
    known->unasked = boundingBox(known->unasked, area);
    if (known->question == Question::none) {
        ask(*known);
    }
}

void DamageReminder::forget(xcb_window_t window) {
    std::erase_if(windows_, [&](const Window& known) { return known.id == window; });
}

void DamageReminder::forgetPaintings() {
    for (Window& window : windows_) {
        window.asked = window.unasked = {};
    }
}

/// One round trip.
DamageReminder::Role DamageReminder::compositorRole() {
    auto* const server = connection_.get();
    const auto compositorCookie = xcb_get_selection_owner(
        server, connection_.atom(selectionName("_NET_WM_CM_S", connection_)));
    const auto managerCookie =
        xcb_get_selection_owner(server, connection_.atom(selectionName("WM_S", connection_)));
    const Reply<xcb_get_selection_owner_reply_t> compositor(
        xcb_get_selection_owner_reply(server, compositorCookie, nullptr));
    const Reply<xcb_get_selection_owner_reply_t> manager(
        xcb_get_selection_owner_reply(server, managerCookie, nullptr));
    if (!compositor || !manager || compositor->owner == XCB_WINDOW_NONE ||
        manager->owner == XCB_WINDOW_NONE) {
        return Role::other;
    }
    // What a program makes has numbers that are alike above the mask.
    const std::uint32_t programMask = ~xcb_get_setup(server)->resource_id_mask;
    return (compositor->owner & programMask) == (manager->owner & programMask) ? Role::windowManager
                                                                               : Role::other;
}

void DamageReminder::ask(Window& window) {
    window.question = Question::pending;
    window.asked = std::exchange(window.unasked, {});
    xcb_convert_selection(
        connection_.get(), window.id, connection_.atom(selectionName("WM_S", connection_)),
        connection_.atom(target), connection_.atom(answerProperty), XCB_CURRENT_TIME);
    connection_.flush();
}

void DamageReminder::handle(const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7F) != XCB_SELECTION_NOTIFY) {
        return;
    }
    const auto& answer = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
    for (Window& window : windows_) {
        if (answer.requestor != window.id || window.question == Question::none) {
            continue;
        }
        window.question = Question::none;
        if (!window.asked.isEmpty()) {
            report(window.id, window.asked);
        }
        if (!window.unasked.isEmpty()) {
            ask(window);
        }
    }
    connection_.flush();
}

void DamageReminder::report(xcb_window_t window, const NativeRect& painted) {
    auto* const server = connection_.get();
    if (extensions_ == Extensions::unasked) {
        // The server refuses every other request of an extension before this one.
        xcb_discard_reply(server, xcb_xfixes_query_version(server, XCB_XFIXES_MAJOR_VERSION,
                                                           XCB_XFIXES_MINOR_VERSION)
                                      .sequence);
        xcb_discard_reply(server, xcb_damage_query_version(server, XCB_DAMAGE_MAJOR_VERSION,
                                                           XCB_DAMAGE_MINOR_VERSION)
                                      .sequence);
        extensions_ = Extensions::ready;
    }
    const xcb_rectangle_t area{
        static_cast<std::int16_t>(painted.x), static_cast<std::int16_t>(painted.y),
        static_cast<std::uint16_t>(painted.width), static_cast<std::uint16_t>(painted.height)};
    const xcb_xfixes_region_t region = xcb_generate_id(server);
    xcb_xfixes_create_region(server, region, 1, &area);
    xcb_damage_add(server, window, region);
    xcb_xfixes_destroy_region(server, region);
}

}  // namespace platform::x11
