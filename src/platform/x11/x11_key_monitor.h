#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>

#include "base/main_queue.h"
#include "platform/x11/connection.h"
#include "platform/x11/keyboard_mapping.h"
#include "platform/x11/swallowed_keys.h"
#include "shortcuts/key_monitor.h"

namespace platform::x11 {

/// Sees the keys of the toolkit's windows first, by looking at the events of the toolkit's
/// connection before the toolkit does. Main thread.
///
/// While a monitor is installed and one of these windows has the input focus, that window holds the
/// keyboard: no key grab fires then, of this program or of another one. The grab belongs to the
/// toolkit's connection, so that a key that passes goes the usual way, and its window is the one
/// with the focus, so that for the toolkit the focus stays where it is. It is let go at once when
/// the focus leaves the window, and what was pressed in between was for somebody else and is told
/// to nobody; after the last monitor, as soon as the keys that it swallowed are
/// up.
///
/// While another program holds the keyboard no key comes at all. Its end is told as a FocusIn, and
/// then the keyboard is taken.
class X11KeyMonitor final : public shortcuts::KeyMonitor {
  public:
    /// `toolkit` is the toolkit's connection; all three must outlive this object. Its monitors may
    /// outlive it.
    X11KeyMonitor(xcb_connection_t* toolkit, const KeyboardMapping& mapping,
                  base::MainQueue& mainQueue);
    ~X11KeyMonitor() override;
    X11KeyMonitor(const X11KeyMonitor&) = delete;
    X11KeyMonitor& operator=(const X11KeyMonitor&) = delete;

    [[nodiscard]] std::unique_ptr<shortcuts::InstalledKeyMonitor> install(Handler handler) override;

    /// An event of the toolkit's connection; one that is consumed is not for the toolkit.
    Connection::EventVerdict handle(const xcb_generic_event_t& event);
    /// Lets the keyboard go because another part of this program needs it; when this returns the
    /// server has done it. Taken again when that part lets go, if a monitor is left by then.
    void letGo();

  private:
    using MonitorID = std::uint64_t;
    class Installed;

    Connection::EventVerdict handlePress(const xcb_key_press_event_t& event,
                                         std::uint32_t fullSequence);
    Connection::EventVerdict handleRelease(const xcb_key_release_event_t& event,
                                           std::uint32_t fullSequence);
    void handleFocusIn(const xcb_focus_in_event_t& event);
    void handleFocusOut(const xcb_focus_out_event_t& event);
    /// Whether a key came here only because the keyboard was still held after the focus had left.
    [[nodiscard]] bool isForSomebodyElse(std::uint32_t fullSequence) const;
    shortcuts::KeyVerdict ask(const shortcuts::KeyEvent& event);
    shortcuts::KeyVerdict tellFlags(std::uint32_t keyCode);
    void remove(MonitorID monitor);
    /// Takes the keyboard or lets it go, as the monitors and the focus ask for.
    void follow();
    void settle();
    [[nodiscard]] xcb_window_t ownFocusWindow() const;

    xcb_connection_t* toolkit_;
    const KeyboardMapping& mapping_;
    base::MainQueue& mainQueue_;
    /// Held by this object alone, looked at by its monitors and delayed calls.
    std::shared_ptr<X11KeyMonitor*> self_;
    /// The newest first.
    std::map<MonitorID, Handler, std::greater<>> monitors_;
    MonitorID lastMonitor_ = 0;
    SwallowedKeys swallowed_;
    /// The toolkit's window with the input focus, XCB_WINDOW_NONE when another program has it.
    xcb_window_t focusWindow_ = XCB_WINDOW_NONE;
    /// The window that holds the keyboard.
    xcb_window_t grabWindow_ = XCB_WINDOW_NONE;
    /// The request that let the keyboard go when the focus had left.
    std::optional<std::uint32_t> lateUngrab_;
};

}  // namespace platform::x11
