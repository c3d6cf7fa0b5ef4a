#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "base/result.h"
#include "platform/dispatch.h"
#include "platform/x11/late_requests.h"

namespace platform::x11 {

/// A reply of the X server, freed with `free` as libxcb asks for.
template <typename T>
struct FreeReply {
    void operator()(T* reply) const { std::free(reply); }
};
template <typename T>
using Reply = std::unique_ptr<T, FreeReply<T>>;

/// The program's own connection to the X server: atoms, event dispatch, server time. Main thread.
///
/// Separate from the toolkit's connection, so that grabs, selections and their time stamps are
/// never seen through a queue that somebody else drains.
class Connection {
  public:
    enum class EventVerdict { pass, consumed };
    using EventHandler = std::function<EventVerdict(const xcb_generic_event_t&)>;

    /// Ends its subscription when destroyed; must not outlive the connection.
    class Subscription {
      public:
        Subscription() = default;
        Subscription(Subscription&& other) noexcept;
        Subscription& operator=(Subscription&& other) noexcept;
        ~Subscription();

      private:
        friend class Connection;
        Subscription(Connection* connection, std::uint64_t id) : connection_(connection), id_(id) {}
        Connection* connection_ = nullptr;
        std::uint64_t id_ = 0;
    };

    /// Ends its selection of root events when destroyed; must not outlive the connection.
    class RootSelection {
      public:
        RootSelection() = default;
        RootSelection(RootSelection&& other) noexcept;
        RootSelection& operator=(RootSelection&& other) noexcept;
        ~RootSelection();

      private:
        friend class Connection;
        RootSelection(Connection* connection, std::uint64_t id)
            : connection_(connection), id_(id) {}
        Connection* connection_ = nullptr;
        std::uint64_t id_ = 0;
    };

    /// Connects to `displayName`, or to $DISPLAY when it is empty.
    static base::Result<std::unique_ptr<Connection>> open(const std::string& displayName = {});
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    [[nodiscard]] xcb_connection_t* get() const { return connection_; }
    [[nodiscard]] const xcb_screen_t& screen() const { return *screen_; }
    [[nodiscard]] int screenNumber() const { return screenNumber_; }
    [[nodiscard]] xcb_window_t root() const { return screen_->root; }
    /// A round trip at the first use of each name.
    [[nodiscard]] xcb_atom_t atom(std::string_view name);
    /// The first event number of an extension, 0 when the server does not have it.
    [[nodiscard]] std::uint8_t firstEvent(xcb_extension_t& extension) const;

    /// Becomes readable when events arrive; replies can leave events behind that it does not show,
    /// so the loop also dispatches before it sleeps.
    [[nodiscard]] int fileDescriptor() const;
    /// Hands the next event that has arrived to the handlers, in the order of their subscription,
    /// until one has consumed it. Of motions that follow each other in one window only the last is
    /// given.
    Dispatch dispatchNextEvent();
    /// Every event that has arrived, with nothing in between.
    void dispatchPendingEvents();
    void flush();
    /// What may wait until a picture has reached the clipboard.
    [[nodiscard]] LateRequests& lateRequests() { return lateRequests_; }
    /// Whether the server is gone.
    [[nodiscard]] bool isLost() const;

    [[nodiscard]] Subscription subscribe(EventHandler handler);
    /// Has the server report the root window's events of `mask` (XCB_EVENT_MASK_...) for as long as
    /// the selection lives. The server knows one mask for each program, so nobody else may set it.
    [[nodiscard]] RootSelection selectRootEvents(std::uint32_t mask);

    /// The time stamp of the last key or button event, 0 before the first.
    [[nodiscard]] xcb_timestamp_t lastInputTime() const { return lastInputTime_; }
    /// The server's time now: one round trip. Other events that arrive meanwhile stay queued.
    [[nodiscard]] xcb_timestamp_t serverTime();

  private:
    Connection(xcb_connection_t* connection, const xcb_screen_t* screen, int screenNumber);
    void dispatch(const xcb_generic_event_t& event);
    void noteTime(const xcb_generic_event_t& event);
    void fetchEvents();
    void applyRootSelections();

    xcb_connection_t* connection_;
    const xcb_screen_t* screen_;
    int screenNumber_;
    std::map<std::string, xcb_atom_t, std::less<>> atoms_;
    std::map<std::uint64_t, EventHandler> handlers_;
    std::uint64_t nextHandlerId_ = 1;
    std::map<std::uint64_t, std::uint32_t> rootSelections_;
    std::uint64_t nextRootSelectionId_ = 1;
    std::list<Reply<xcb_generic_event_t>> queue_;
    xcb_window_t timeWindow_ = XCB_WINDOW_NONE;
    xcb_timestamp_t lastInputTime_ = XCB_CURRENT_TIME;
    LateRequests lateRequests_;
};

}  // namespace platform::x11
