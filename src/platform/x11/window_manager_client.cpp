#include "platform/x11/window_manager_client.h"

#include <algorithm>
#include <vector>

#include "platform/x11/window_property.h"

namespace platform::x11 {

namespace {

/// Says that the request comes from the user, not from the program by itself: window managers
/// hold back only the latter.
constexpr std::uint32_t fromTheUser = 2;

}  // namespace

void WindowManagerClient::activate(xcb_window_t window) {
    xcb_client_message_data_t data{};
    data.data32[0] = fromTheUser;
    data.data32[1] = connection_.serverTime();
    sendToRoot(window, "_NET_ACTIVE_WINDOW", data);
    connection_.flush();
}

void WindowManagerClient::setActivationPolicy(xcb_window_t window, app::ActivationPolicy policy) {
    const auto stateRequest = askForProperty(connection_, window, "_NET_WM_STATE");
    const auto managedRequest = askForProperty(connection_, window, "WM_STATE");
    std::vector<std::uint32_t> states = readNumbers(connection_, stateRequest, XCB_ATOM_ATOM);
    const bool isManaged = readPresence(connection_, managedRequest);
    const xcb_atom_t skipTaskbar = connection_.atom("_NET_WM_STATE_SKIP_TASKBAR");
    const xcb_atom_t skipPager = connection_.atom("_NET_WM_STATE_SKIP_PAGER");
    const bool isAccessory = policy == app::ActivationPolicy::accessory;
    // One that is just taking the window over has read the property already, and reads this next.
    changeManagedState(window, isAccessory ? StateChange::add : StateChange::remove, skipTaskbar,
                       skipPager);
    if (isManaged) {
        return;
    }
    // Before a window manager has taken the window over, the property is the program's own.
    std::erase_if(states,
                  [&](std::uint32_t state) { return state == skipTaskbar || state == skipPager; });
    if (isAccessory) {
        states.insert(states.end(), {skipTaskbar, skipPager});
    }
    xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window,
                        connection_.atom("_NET_WM_STATE"), XCB_ATOM_ATOM, 32,
                        static_cast<std::uint32_t>(states.size()), states.data());
    connection_.flush();
}

void WindowManagerClient::setLevel(xcb_window_t window, app::WindowLevel level) {
    const bool isFloating = level == app::WindowLevel::floating;
    changeManagedState(window, isFloating ? StateChange::add : StateChange::remove,
                       connection_.atom("_NET_WM_STATE_ABOVE"));
}

bool WindowManagerClient::exists(xcb_window_t window) const {
    const auto cookie = xcb_get_window_attributes(connection_.get(), window);
    const Reply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(connection_.get(), cookie, nullptr));
    return attributes != nullptr;
}

void WindowManagerClient::changeManagedState(xcb_window_t window, StateChange change,
                                             xcb_atom_t first, xcb_atom_t second) {
    xcb_client_message_data_t data{};
    data.data32[0] = static_cast<std::uint32_t>(change);
    data.data32[1] = first;
    data.data32[2] = second;
    data.data32[3] = fromTheUser;
    sendToRoot(window, "_NET_WM_STATE", data);
    connection_.flush();
}

void WindowManagerClient::sendToRoot(xcb_window_t window, std::string_view type,
                                     const xcb_client_message_data_t& data) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = connection_.atom(type);
    message.data = data;
    xcb_send_event(connection_.get(), 0, connection_.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
}

}  // namespace platform::x11
