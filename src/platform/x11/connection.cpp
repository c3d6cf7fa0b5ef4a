#include "platform/x11/connection.h"

#include <utility>
#include <vector>

namespace platform::x11 {

namespace {

std::uint8_t eventType(const xcb_generic_event_t& event) {
    return static_cast<std::uint8_t>(event.response_type & 0x7F);
}

const xcb_screen_t* screenOf(xcb_connection_t* connection, int number) {
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; screens.rem > 0 && number > 0; --number) {
        xcb_screen_next(&screens);
    }
    return screens.rem > 0 ? screens.data : nullptr;
}

bool isMotionInSameWindow(const xcb_generic_event_t& first, const xcb_generic_event_t& second) {
    if (eventType(first) != XCB_MOTION_NOTIFY || eventType(second) != XCB_MOTION_NOTIFY) {
        return false;
    }
    return reinterpret_cast<const xcb_motion_notify_event_t&>(first).event ==
           reinterpret_cast<const xcb_motion_notify_event_t&>(second).event;
}

}  // namespace

Connection::Subscription::Subscription(Subscription&& other) noexcept
    : connection_(std::exchange(other.connection_, nullptr)), id_(other.id_) {}

Connection::Subscription& Connection::Subscription::operator=(Subscription&& other) noexcept {
    std::swap(connection_, other.connection_);
    std::swap(id_, other.id_);
    return *this;
}

Connection::Subscription::~Subscription() {
    if (connection_ != nullptr) {
        connection_->handlers_.erase(id_);
    }
}

Connection::RootSelection::RootSelection(RootSelection&& other) noexcept
    : connection_(std::exchange(other.connection_, nullptr)), id_(other.id_) {}

Connection::RootSelection& Connection::RootSelection::operator=(RootSelection&& other) noexcept {
    std::swap(connection_, other.connection_);
    std::swap(id_, other.id_);
    return *this;
}

Connection::RootSelection::~RootSelection() {
    if (connection_ != nullptr) {
        connection_->rootSelections_.erase(id_);
        connection_->applyRootSelections();
    }
}

base::Result<std::unique_ptr<Connection>> Connection::open(const std::string& displayName) {
    int number = 0;
    xcb_connection_t* connection =
        xcb_connect(displayName.empty() ? nullptr : displayName.c_str(), &number);
    const xcb_screen_t* screen =
        xcb_connection_has_error(connection) != 0 ? nullptr : screenOf(connection, number);
    if (screen == nullptr) {
        xcb_disconnect(connection);
        return base::Error{base::ErrorKind::unavailable, "There is no X server to connect to."};
    }
    return std::unique_ptr<Connection>(new Connection(connection, screen, number));
}

Connection::Connection(xcb_connection_t* connection, const xcb_screen_t* screen, int screenNumber)
    : connection_(connection), screen_(screen), screenNumber_(screenNumber) {}

Connection::~Connection() {
    lateRequests_.sendAll();
    xcb_disconnect(connection_);
}

xcb_atom_t Connection::atom(std::string_view name) {
    const auto known = atoms_.find(name);
    if (known != atoms_.end()) {
        return known->second;
    }
    const auto cookie =
        xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_, cookie, nullptr));
    const xcb_atom_t atom = reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
    atoms_.emplace(name, atom);
    return atom;
}

std::uint8_t Connection::firstEvent(xcb_extension_t& extension) const {
    const auto* data = xcb_get_extension_data(connection_, &extension);
    return data != nullptr && data->present != 0 ? data->first_event : std::uint8_t{0};
}

int Connection::fileDescriptor() const {
    return xcb_get_file_descriptor(connection_);
}

void Connection::fetchEvents() {
    while (auto* event = xcb_poll_for_event(connection_)) {
        queue_.emplace_back(event);
    }
}

Dispatch Connection::dispatchNextEvent() {
    fetchEvents();
    Reply<xcb_generic_event_t> event;
    do {
        if (queue_.empty()) {
            flush();
            return Dispatch::nothing;
        }
        event = std::move(queue_.front());
        queue_.pop_front();
    } while (!queue_.empty() && isMotionInSameWindow(*event, *queue_.front()));
    dispatch(*event);
    flush();
    return Dispatch::done;
}

void Connection::dispatchPendingEvents() {
    while (dispatchNextEvent() == Dispatch::done) {
    }
}

void Connection::dispatch(const xcb_generic_event_t& event) {
    noteTime(event);
    // By number, not by iterator: a handler may end any subscription, its own too.
    std::vector<std::uint64_t> ids;
    ids.reserve(handlers_.size());
    for (const auto& [id, handler] : handlers_) {
        ids.push_back(id);
    }
    for (const std::uint64_t id : ids) {
        const auto entry = handlers_.find(id);
        if (entry == handlers_.end()) {
            continue;
        }
        const EventHandler handler = entry->second;
        if (handler(event) == EventVerdict::consumed) {
            return;
        }
    }
}

void Connection::noteTime(const xcb_generic_event_t& event) {
    if ((event.response_type & 0x80) != 0) {
        // Made up by another program, its time too.
        return;
    }
    switch (eventType(event)) {
        case XCB_KEY_PRESS:
        case XCB_KEY_RELEASE:
        case XCB_BUTTON_PRESS:
        case XCB_BUTTON_RELEASE:
            // The four share one layout up to the time stamp.
            lastInputTime_ = reinterpret_cast<const xcb_key_press_event_t&>(event).time;
            break;
        default:
            break;
    }
}

void Connection::flush() {
    xcb_flush(connection_);
}

bool Connection::isLost() const {
    return xcb_connection_has_error(connection_) != 0;
}

Connection::Subscription Connection::subscribe(EventHandler handler) {
    const std::uint64_t id = nextHandlerId_++;
    handlers_.emplace(id, std::move(handler));
    return {this, id};
}

Connection::RootSelection Connection::selectRootEvents(std::uint32_t mask) {
    const std::uint64_t id = nextRootSelectionId_++;
    rootSelections_.emplace(id, mask);
    applyRootSelections();
    return {this, id};
}

void Connection::applyRootSelections() {
    std::uint32_t mask = XCB_EVENT_MASK_NO_EVENT;
    for (const auto& [id, selected] : rootSelections_) {
        mask |= selected;
    }
    xcb_change_window_attributes(connection_, root(), XCB_CW_EVENT_MASK, &mask);
}

xcb_timestamp_t Connection::serverTime() {
    if (timeWindow_ == XCB_WINDOW_NONE) {
        timeWindow_ = xcb_generate_id(connection_);
        const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(connection_, XCB_COPY_FROM_PARENT, timeWindow_, root(), -1, -1, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                          &mask);
    }
    // A property change of zero length is answered with an event that carries the time.
    xcb_change_property(connection_, XCB_PROP_MODE_APPEND, timeWindow_, XCB_ATOM_WM_NAME,
                        XCB_ATOM_STRING, 8, 0, nullptr);
    flush();
    while (auto* event = xcb_wait_for_event(connection_)) {
        Reply<xcb_generic_event_t> held(event);
        const auto& property = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
        if (eventType(*event) == XCB_PROPERTY_NOTIFY && property.window == timeWindow_) {
            return property.time;
        }
        queue_.push_back(std::move(held));
    }
    return XCB_CURRENT_TIME;
}

}  // namespace platform::x11
