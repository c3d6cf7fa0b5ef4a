#include "platform/x11/x11_overlay_stage.h"

#include <utility>

#include "platform/x11/compositor.h"
#include "platform/x11/x11_snapshot.h"

namespace platform::x11 {

X11OverlayStage::X11OverlayStage(Connection& connection, base::MainQueue& mainQueue,
                                 FrontProcess frontProcess)
    : connection_(connection),
      mainQueue_(mainQueue),
      frontProcess_(std::move(frontProcess)),
      liveWindows_(connection, mainQueue),
      damageReminder_(connection),
      snapshotShelf_(connection, mainQueue) {}

StageMode X11OverlayStage::mode() {
    return isCompositorRunning(connection_) ? StageMode::live : StageMode::frozen;
}

std::shared_ptr<const Snapshot> X11OverlayStage::snapshotFor(const NativeRect& frame) {
    auto snapshot = snapshotShelf_.find(frame);
    return snapshot && snapshot->isTaken() ? snapshot : X11Snapshot::take(connection_, frame);
}

void X11OverlayStage::windowMapped(xcb_window_t window, const NativeRect& frame,
                                   std::shared_ptr<const Snapshot> snapshot) {
    if (snapshot) {
        snapshotShelf_.add(window, std::move(snapshot));
        if (frontProcess_) {
            // When every display is covered: a redirected window flickers, which then nobody sees
            // and no snapshot holds.
            mainQueue_.post(alive_.guard([this] { redirectWindows(); }));
        }
    } else {
        liveWindows_.add(window, frame);
    }
}

PaintPermission X11OverlayStage::requestPaint(xcb_window_t window) {
    return snapshotShelf_.holds(window) ? PaintPermission::granted
                                        : liveWindows_.requestPaint(window);
}

void X11OverlayStage::windowPainted(xcb_window_t window, const NativeRect& area) {
    if (liveWindows_.holds(window)) {
        damageReminder_.painted(window, area);
    }
}

void X11OverlayStage::windowClosed(xcb_window_t window) {
    damageReminder_.forget(window);
    snapshotShelf_.close(window);
    if (!snapshotShelf_.isShowing() && redirectedWindows_) {
        // After the window that hides it.
        connection_.lateRequests().add(
            [redirected = std::exchange(redirectedWindows_, nullptr)]() mutable {
                redirected.reset();
            });
    }
    liveWindows_.close(window);
}

void X11OverlayStage::redirectWindows() {
    if (!snapshotShelf_.isShowing() || redirectedWindows_) {
        return;
    }
    if (const auto process = frontProcess_()) {
        redirectedWindows_ =
            RedirectedWindows::ofProcess(connection_, *process, snapshotShelf_.shownFrames());
    }
}

void X11OverlayStage::whenClear(const NativeRect& region, std::function<void()> clear) {
    // A wait until it is gone begins, and what is reported now would be one frame more.
    damageReminder_.forgetPaintings();
    liveWindows_.whenClear(region, std::move(clear));
}

std::shared_ptr<const Snapshot> X11OverlayStage::snapshotInUse(const NativeRect& frame) const {
    return snapshotShelf_.find(frame);
}

void X11OverlayStage::noteSelection(std::size_t pixels) {
    if (onSelection_) {
        onSelection_(pixels);
    }
}

bool X11OverlayStage::holds(xcb_window_t window) const {
    return snapshotShelf_.holds(window) || liveWindows_.holds(window);
}

}  // namespace platform::x11
