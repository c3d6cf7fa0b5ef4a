#include "platform/x11/system_tray_watch.h"

#include <xcb/xfixes.h>

#include <string>
#include <utility>

namespace platform::x11 {

namespace {

bool hasOwner(Connection& connection, xcb_atom_t selection) {
    const auto cookie = xcb_get_selection_owner(connection.get(), selection);
    const Reply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(connection.get(), cookie, nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

}  // namespace

SystemTrayWatch::SystemTrayWatch(Connection& connection, std::function<void()> onPresent)
    : onPresent_(std::move(onPresent)) {
    const xcb_atom_t selection =
        connection.atom("_NET_SYSTEM_TRAY_S" + std::to_string(connection.screenNumber()));
    const std::uint8_t firstEvent = connection.firstEvent(xcb_xfixes_id);
    if (firstEvent != 0) {
        // The server answers nothing of the extension before it has been told a version.
        xcb_discard_reply(connection.get(),
                          xcb_xfixes_query_version(connection.get(), 5, 0).sequence);
        xcb_xfixes_select_selection_input(connection.get(), connection.root(), selection,
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
        subscription_ = connection.subscribe([this, selection, firstEvent](const auto& event) {
            const auto& notice =
                reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
            if ((event.response_type & 0x7F) == firstEvent + XCB_XFIXES_SELECTION_NOTIFY &&
                notice.selection == selection && notice.owner != XCB_WINDOW_NONE) {
                tell();
            }
            return Connection::EventVerdict::pass;
        });
    }
    if (hasOwner(connection, selection)) {
        tell();
    }
}

void SystemTrayWatch::tell() {
    if (const auto onPresent = std::exchange(onPresent_, nullptr)) {
        onPresent();
    }
}

}  // namespace platform::x11
