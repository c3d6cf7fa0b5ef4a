#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/alive.h"
#include "base/capture_mode.h"
#include "base/displays.h"
#include "base/log.h"
#include "base/main_queue.h"
#include "capture/capture_service.h"
#include "capture/screen_capture.h"
#include "overlay/overlay_surface.h"
#include "overlay/pointer.h"
#include "overlay/selection_drawing.h"
#include "overlay/selection_geometry.h"

namespace overlay {

/// The content of one overlay window: turns mouse events into a selection, draws it, and at the end
/// hands it to capture. Shared between its window and the captures begun from it, because a capture
/// may outlive the overlay. Main thread.
class SelectionView : public std::enable_shared_from_this<SelectionView> {
  public:
    /// What it needs of the outside; everything outlives it.
    struct Mediator {
        Pointer& pointer;
        capture::CaptureService& captureService;
        capture::ScreenCapture& screenCapture;
        base::MainQueue& mainQueue;
        base::Log& log;
        /// Closes the whole overlay.
        std::function<void()> closeOverlay;
        /// The application whose windows can be picked.
        std::function<std::optional<std::int32_t>()> targetAppPID;
    };

    /// Where the view lies on the desktop, in screen space.
    struct Placement {
        base::Rect displayFrame;
        /// The height of the primary display, in points.
        double primaryHeight = 0;
    };

    SelectionView(Mediator mediator, base::CaptureMode mode, const Placement& placement);

    /// The window that the view is in, null when it is in none.
    void setSurface(OverlaySurface* surface) { surface_ = surface; }
    [[nodiscard]] const SelectionState& state() const { return state_; }

    void mouseEntered();
    void mouseDown(const MouseEvent& event);
    void mouseDragged(const MouseEvent& event);
    void mouseMoved();
    /// Finishes the selection; the overlay is closed in a later turn.
    void mouseUp();
    /// Switches between selecting a region and picking a window.
    void toggleWindowMode();

    /// Starts the capture of the selected region, if it is one, and has the overlay closed.
    void captureRegion();
    /// Starts the capture of a window; closes nothing.
    void captureWindow(capture::WindowID windowID);

  private:
    void loadAvailableWindows();
    void handleWindowList(const capture::ShareableContent& content);
    void finishSelection();
    void setNeedsDisplay();
    void setCursorForMode();
    void queueClose();
    [[nodiscard]] base::Rect bounds() const;
    [[nodiscard]] double scaleFactor() const;
    [[nodiscard]] std::optional<std::string> colorSpaceName() const;

    Mediator mediator_;
    Placement placement_;
    SelectionState state_;
    OverlaySurface* surface_ = nullptr;
    SelectionDrawing presented_;
};

}  // namespace overlay
