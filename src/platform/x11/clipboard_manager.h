#pragma once

#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <vector>

#include "base/alive.h"
#include "base/main_queue.h"
#include "platform/x11/connection.h"

namespace platform::x11 {

/// Asks the desktop's clipboard manager to keep what the clipboard holds. Main thread.
class ClipboardManager {
  public:
    /// The manager's answer is not waited for any longer than this.
    static constexpr std::chrono::milliseconds patience{1000};

    /// `window` is this program's own; the answers go there.
    ClipboardManager(Connection& connection, base::MainQueue& mainQueue, xcb_window_t window);

    /// Calls `done` exactly once: before returning when no manager runs, else when it has answered,
    /// whatever it answers, or its time is up. A second call joins one that is under way.
    void save(const std::vector<xcb_atom_t>& targets, std::function<void()> done);
    void handleEvent(const xcb_generic_event_t& event);

  private:
    [[nodiscard]] bool isRunning() const;
    void ask(const std::vector<xcb_atom_t>& targets);
    void finish();

    Connection& connection_;
    base::MainQueue& mainQueue_;
    xcb_window_t window_;
    xcb_atom_t selection_;
    xcb_atom_t saveTargets_;
    xcb_atom_t property_;
    /// Empty unless an answer is waited for.
    std::vector<std::function<void()>> waiting_;
    std::uint64_t attempt_ = 0;
    base::Alive alive_;
};

}  // namespace platform::x11
