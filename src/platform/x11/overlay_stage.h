#pragma once

#include <xcb/xcb.h>

#include <cstddef>
#include <functional>
#include <memory>

#include "platform/x11/native_geometry.h"

namespace platform::x11 {

class RedirectedWindows;

/// The picture of one display from the moment when the overlay opened: a pixmap of the server,
/// never read whole into this process. Freed with its last owner.
class Snapshot {
  public:
    virtual ~Snapshot() = default;
    /// Depth and visual of the root window; as large as `frame`.
    [[nodiscard]] virtual xcb_pixmap_t pixmap() const = 0;
    /// The display, in native pixels of the X screen.
    [[nodiscard]] virtual NativeRect frame() const = 0;
    /// False when the server had no memory for it; a window that shows it could not be made then.
    [[nodiscard]] virtual bool isTaken() const = 0;
};

/// How the overlay shows what lies under it.
enum class StageMode {
    /// The session blends: ARGB windows over the live screen.
    live,
    /// It does not: the windows show a snapshot, and captures are cut from it.
    frozen,
};

/// Whether a window of the overlay may be painted now.
enum class PaintPermission {
    granted,
    /// A capture waits until the overlay has left the screen. The window gets an Expose event when
    /// that is over, and then paints everything it has to show.
    later,
};

/// What the overlay's windows and the capture know of each other: which windows are up, the
/// snapshots behind them, and when the last trace of them has left the screen. The one place that
/// decides between live and frozen. Main thread.
class OverlayStage {
  public:
    virtual ~OverlayStage() = default;

    /// The mode for an opening that begins now: live where `_NET_WM_CM_Sn` is owned.
    [[nodiscard]] virtual StageMode mode() = 0;

    /// The snapshot of the display `frame` for an opening that begins now. Taken before any window
    /// of the opening is mapped; while an overlay is still up, or the windows below have not yet
    /// repainted after one (bounded), the old snapshot of that display is handed over instead.
    [[nodiscard]] virtual std::shared_ptr<const Snapshot> snapshotFor(const NativeRect& frame) = 0;

    /// A window of the overlay was mapped over `frame`; `snapshot` is null in live mode. The window
    /// is the stage's from here on.
    virtual void windowMapped(xcb_window_t window, const NativeRect& frame,
                              std::shared_ptr<const Snapshot> snapshot) = 0;
    /// To be asked before each painting of a mapped window, the answer to be kept to. A window that
    /// never asked holds nothing that a capture would have to wait for.
    [[nodiscard]] virtual PaintPermission requestPaint(xcb_window_t window) = 0;
    /// The requests sent so far paint `area`, in the window's own pixels: to be told after each
    /// painting that was granted.
    virtual void windowPainted(xcb_window_t window, const NativeRect& area) = 0;
    /// The overlay is done with the window: it is cleared to transparent at once (live), takes no
    /// more input, and is destroyed when the screen has repainted (live) or at once (frozen). The
    /// window is no longer the caller's. Live windows need the background pixel 0, since it is the
    /// server that clears them.
    virtual void windowClosed(xcb_window_t window) = 0;
    /// Calls `clear` exactly once, in a later turn: when no overlay pixel is left on the screen
    /// inside `region` (native pixels). Windows that are still up are cleared first. Bounded in
    /// time.
    virtual void whenClear(const NativeRect& region, std::function<void()> clear) = 0;

    /// The snapshot to cut captures of the display `frame` from: of the overlay that is up there,
    /// or that was until a moment ago; null when the live screen is to be read.
    [[nodiscard]] virtual std::shared_ptr<const Snapshot> snapshotInUse(
        const NativeRect& frame) const = 0;
    /// What has the server keep the windows of the application in front whole, covered as they are,
    /// while snapshots hide the screen: to be held until one of them is captured. Null when the
    /// server needs no telling.
    [[nodiscard]] virtual std::shared_ptr<const RedirectedWindows> keptWindows() const = 0;
    /// Whether the window is one of the overlay's, closed ones that are still on the screen
    /// included.
    [[nodiscard]] virtual bool holds(xcb_window_t window) const = 0;

    /// How much is selected at the moment, while the person still drags.
    virtual void noteSelection(std::size_t pixels) = 0;
    using SelectionListener = std::function<void(std::size_t pixels)>;
    /// Who prepares for the capture; called while the person drags.
    virtual void onSelection(SelectionListener listener) = 0;
};

}  // namespace platform::x11
