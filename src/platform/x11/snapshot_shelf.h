#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "base/alive.h"
#include "base/main_queue.h"
#include "platform/x11/connection.h"
#include "platform/x11/overlay_stage.h"

namespace platform::x11 {

/// The overlay's windows that show snapshots, and the snapshots. Main thread.
///
/// A snapshot stays a moment longer than its window: the windows below have the server's background
/// where the overlay was until they have repainted, which no event tells.
class SnapshotShelf {
  public:
    SnapshotShelf(Connection& connection, base::MainQueue& mainQueue);

    void add(xcb_window_t window, std::shared_ptr<const Snapshot> snapshot);
    [[nodiscard]] bool holds(xcb_window_t window) const;
    /// Whether a window is up.
    [[nodiscard]] bool isShowing() const { return !shown_.empty(); }
    /// The displays over which windows are up.
    [[nodiscard]] std::vector<NativeRect> shownFrames() const;
    /// Destroys the window, after a picture that is on its way to the clipboard.
    void close(xcb_window_t window);
    /// The snapshot of the display that is in use, or was until a moment ago; else null.
    [[nodiscard]] std::shared_ptr<const Snapshot> find(const NativeRect& frame) const;

  private:
    void forgetLater(std::uint64_t number);
    struct Shown {
        xcb_window_t window = XCB_WINDOW_NONE;
        std::shared_ptr<const Snapshot> snapshot;
    };
    struct Kept {
        std::uint64_t number = 0;
        std::shared_ptr<const Snapshot> snapshot;
    };

    Connection& connection_;
    base::MainQueue& mainQueue_;
    std::vector<Shown> shown_;
    std::vector<Kept> kept_;
    std::uint64_t nextNumber_ = 1;
    base::Alive alive_;
};

}  // namespace platform::x11
