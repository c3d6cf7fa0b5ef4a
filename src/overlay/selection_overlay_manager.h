#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "base/alive.h"
#include "base/capture_mode.h"
#include "base/displays.h"
#include "base/log.h"
#include "base/main_queue.h"
#include "capture/capture_service.h"
#include "capture/screen_capture.h"
#include "overlay/keyboard_tap.h"
#include "overlay/overlay_surface.h"
#include "overlay/pointer.h"
#include "overlay/selection_window.h"
#include "overlay/workspace.h"

namespace overlay {

/// Opens and closes the overlay: one window per display, the key-down tap and the cursor. One per
/// process, reached through `shared()`; tests build their own. Main thread.
class SelectionOverlayManager {
  public:
    /// What it needs of the outside; everything outlives it.
    struct Mediator {
        Workspace& workspace;
        base::Displays& displays;
        OverlaySurfaceFactory& surfaces;
        KeyboardTap& keyboardTap;
        Pointer& pointer;
        capture::CaptureService& captureService;
        capture::ScreenCapture& screenCapture;
        base::MainQueue& mainQueue;
        base::Log& log;
    };

    explicit SelectionOverlayManager(const Mediator& mediator) : mediator_(mediator) {}
    SelectionOverlayManager(const SelectionOverlayManager&) = delete;
    SelectionOverlayManager& operator=(const SelectionOverlayManager&) = delete;

    /// The one instance of the process, built at the first access from what `provideShared` was
    /// given.
    static SelectionOverlayManager& shared();
    /// Tells how the shared instance is built; called once, by the composition root.
    static void provideShared(const Mediator& mediator);

    /// Opens the overlay; one that is up is closed first, its selection lost. Returns at once.
    void showSelection(base::CaptureMode mode);
    /// Closes the overlay; safe when none is open.
    void close();
    /// Switches every display between selecting a region and picking a window.
    void toggleWindowMode();

    [[nodiscard]] const std::vector<std::unique_ptr<SelectionWindow>>& windows() const {
        return windows_;
    }
    [[nodiscard]] bool hasEventTap() const { return eventTap_ != nullptr; }
    [[nodiscard]] base::CaptureMode currentMode() const { return currentMode_; }
    /// The application that was in front at an opening; never cleared.
    [[nodiscard]] std::optional<std::int32_t> targetAppPID() const { return targetAppPID_; }

  private:
    void recordFrontmostApplication();
    void openWindow(const base::Screen& screen, double primaryHeight);
    void setupEventTap();
    void removeEventTap();
    TapVerdict handleTapEvent(const TapEvent& event);

    Mediator mediator_;
    base::Alive alive_;
    std::vector<std::unique_ptr<SelectionWindow>> windows_;
    /// Installed on the main loop for as long as it exists.
    std::unique_ptr<EventTap> eventTap_;
    base::CaptureMode currentMode_ = base::CaptureMode::screenshot;
    std::optional<std::int32_t> targetAppPID_;
};

}  // namespace overlay
