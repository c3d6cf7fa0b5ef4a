#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "base/alive.h"
#include "base/main_queue.h"
#include "platform/x11/connection.h"
#include "platform/x11/damage_reminder.h"
#include "platform/x11/live_windows.h"
#include "platform/x11/overlay_stage.h"
#include "platform/x11/redirected_windows.h"
#include "platform/x11/snapshot_shelf.h"

namespace platform::x11 {

/// The stage on a real server. Main thread; the connection, whose events somebody dispatches, and
/// the main queue outlive it.
class X11OverlayStage final : public OverlayStage {
  public:
    /// The process of the application in front; none when there is none.
    using FrontProcess = std::function<std::optional<std::int32_t>()>;

    /// Without `frontProcess` no window is kept whole.
    X11OverlayStage(Connection& connection, base::MainQueue& mainQueue,
                    FrontProcess frontProcess = {});

    [[nodiscard]] StageMode mode() override;
    [[nodiscard]] std::shared_ptr<const Snapshot> snapshotFor(const NativeRect& frame) override;
    void windowMapped(xcb_window_t window, const NativeRect& frame,
                      std::shared_ptr<const Snapshot> snapshot) override;
    [[nodiscard]] PaintPermission requestPaint(xcb_window_t window) override;
    void windowPainted(xcb_window_t window, const NativeRect& area) override;
    void windowClosed(xcb_window_t window) override;
    void whenClear(const NativeRect& region, std::function<void()> clear) override;
    [[nodiscard]] std::shared_ptr<const Snapshot> snapshotInUse(
        const NativeRect& frame) const override;
    [[nodiscard]] std::shared_ptr<const RedirectedWindows> keptWindows() const override {
        return redirectedWindows_;
    }
    [[nodiscard]] bool holds(xcb_window_t window) const override;
    void noteSelection(std::size_t pixels) override;
    void onSelection(SelectionListener listener) override { onSelection_ = std::move(listener); }

  private:
    void redirectWindows();

    Connection& connection_;
    base::MainQueue& mainQueue_;
    FrontProcess frontProcess_;
    SelectionListener onSelection_;
    LiveWindows liveWindows_;
    DamageReminder damageReminder_;
    SnapshotShelf snapshotShelf_;
    /// Only while a snapshot is shown.
    std::shared_ptr<const RedirectedWindows> redirectedWindows_;
    base::Alive alive_;
};

}  // namespace platform::x11
