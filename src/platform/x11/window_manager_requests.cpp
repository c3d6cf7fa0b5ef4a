#include "platform/x11/window_manager_requests.h"

#include <array>
#include <string_view>

namespace platform::x11 {

namespace {

// Who asks: 2 stands for direct user action, which is never held back.
constexpr std::uint32_t sourceUser = 2;
constexpr std::uint32_t stateRemove = 0;
constexpr std::uint32_t stateAdd = 1;

void tellWindowManager(Connection& connection, xcb_window_t window, std::string_view message,
                       const std::array<std::uint32_t, 5>& data) {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = connection.atom(message);
    for (std::size_t index = 0; index < data.size(); ++index) {
        event.data.data32[index] = data[index];
    }
    xcb_send_event(connection.get(), 0, connection.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&event));
    connection.flush();
}

}  // namespace

void requestActivation(Connection& connection, xcb_window_t window) {
    tellWindowManager(connection, window, "_NET_ACTIVE_WINDOW",
                      {sourceUser, connection.serverTime(), XCB_WINDOW_NONE, 0, 0});
}

void requestTaskbarPresence(Connection& connection, xcb_window_t window, TaskbarPresence presence) {
    tellWindowManager(connection, window, "_NET_WM_STATE",
                      {presence == TaskbarPresence::hidden ? stateAdd : stateRemove,
                       connection.atom("_NET_WM_STATE_SKIP_TASKBAR"),
                       connection.atom("_NET_WM_STATE_SKIP_PAGER"), 1, 0});
}

}  // namespace platform::x11
