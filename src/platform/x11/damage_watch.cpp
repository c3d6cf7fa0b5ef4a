#include "platform/x11/damage_watch.h"

#include <xcb/damage.h>

#include <utility>

namespace platform::x11 {

DamageWatch::DamageWatch(Connection& connection, Handler handler)
    : connection_(connection), damage_(xcb_generate_id(connection.get())) {
    // The server refuses every other request of the extension before this one.
    const auto version = xcb_damage_query_version(connection.get(), XCB_DAMAGE_MAJOR_VERSION,
                                                  XCB_DAMAGE_MINOR_VERSION);
    xcb_discard_reply(connection.get(), version.sequence);
    const auto notify =
        static_cast<std::uint8_t>(connection.firstEvent(xcb_damage_id) + XCB_DAMAGE_NOTIFY);
    xcb_damage_create(connection.get(), damage_, connection.root(),
                      XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
    subscription_ = connection.subscribe(
        [damage = damage_, notify, handler = std::move(handler)](const xcb_generic_event_t& event) {
            const auto& painted = reinterpret_cast<const xcb_damage_notify_event_t&>(event);
            if ((event.response_type & 0x7F) != notify || painted.damage != damage) {
                return Connection::EventVerdict::pass;
            }
            handler({painted.area.x, painted.area.y, painted.area.width, painted.area.height},
                    event.full_sequence);
            return Connection::EventVerdict::consumed;
        });
}

DamageWatch::~DamageWatch() {
    xcb_damage_destroy(connection_.get(), damage_);
}

bool DamageWatch::isAfter(std::uint32_t sequence, xcb_void_cookie_t request) {
    return static_cast<std::int32_t>(sequence - request.sequence) >= 0;
}

}  // namespace platform::x11
