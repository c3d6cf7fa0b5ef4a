#pragma once

#include "base/main_queue.h"
#include "platform/x11/connection.h"
#include "platform/x11/live_windows.h"
#include "platform/x11/overlay_stage.h"
#include "platform/x11/snapshot_shelf.h"

namespace platform::x11 {

/// The stage on a real server. Main thread; the connection, whose events somebody dispatches, and
/// the main queue outlive it.
class X11OverlayStage final : public OverlayStage {
  public:
    X11OverlayStage(Connection& connection, base::MainQueue& mainQueue);

    [[nodiscard]] StageMode mode() override;
    [[nodiscard]] std::shared_ptr<const Snapshot> snapshotFor(const NativeRect& frame) override;
    void windowMapped(xcb_window_t window, const NativeRect& frame,
                      std::shared_ptr<const Snapshot> snapshot) override;
    [[nodiscard]] PaintPermission requestPaint(xcb_window_t window) override;
    void windowClosed(xcb_window_t window) override;
    void whenClear(const NativeRect& region, std::function<void()> clear) override;
    [[nodiscard]] std::shared_ptr<const Snapshot> snapshotInUse(
        const NativeRect& frame) const override;
    [[nodiscard]] bool holds(xcb_window_t window) const override;

  private:
    Connection& connection_;
    LiveWindows liveWindows_;
    SnapshotShelf snapshotShelf_;
};

}  // namespace platform::x11
