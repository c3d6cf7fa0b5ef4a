#pragma once

#include <xcb/xcb.h>

#include <vector>

#include "platform/x11/connection.h"
#include "platform/x11/native_geometry.h"

namespace platform::x11 {

/// Tells a compositor once more what was painted in the overlay's windows, where it may never have
/// heard of it. Main thread.
///
/// The server tells of no damage inside of what it has told before until the compositor says that
/// it has seen that. mutter reads a window and then says so, but this leaves its program only after
/// the frame: what is painted in between is not in that frame, and is forgotten with what was seen.
/// So a painting is followed by a question to the program, which it answers between two frames
/// and on the connection on which it has said what it has seen. With the answer the painting is
/// reported once more, and is not forgotten any more.
///
/// The question is the conversion of the window manager's selection, which every window manager has
/// to answer or to refuse; the answer says nothing of a compositor in another program, and then
/// nothing is asked. One that does not answer gets no reminders.
class DamageReminder {
  public:
    /// The connection, whose events somebody dispatches, outlives it.
    explicit DamageReminder(Connection& connection);

    /// `area`, in the window's own pixels, was painted by the requests sent so far.
    void painted(xcb_window_t window, const NativeRect& area);
    /// The window is done with.
    void forget(xcb_window_t window);
    /// Nothing that was painted until now matters any more.
    void forgetPaintings();

  private:
    enum class Role { windowManager, other };
    enum class Question { none, pending };
    struct Window {
        xcb_window_t id = XCB_WINDOW_NONE;
        /// Of the compositor.
        Role role = Role::other;
        Question question = Question::none;
        /// Painted before the question that is pending.
        NativeRect asked{};
        /// Painted after it.
        NativeRect unasked{};
    };

    [[nodiscard]] Role compositorRole();
    void ask(Window& window);
    void handle(const xcb_generic_event_t& event);
    void report(xcb_window_t window, const NativeRect& painted);

    Connection& connection_;
    std::vector<Window> windows_;
    enum class Extensions { unasked, ready } extensions_ = Extensions::unasked;
    Connection::Subscription subscription_;
};

}  // namespace platform::x11
