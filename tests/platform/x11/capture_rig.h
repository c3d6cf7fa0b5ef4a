#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "capture/capture_service.h"
#include "desktop/desktop.h"
#include "doubles/manual_main_queue.h"
#include "platform/x11/display_layout.h"
#include "platform/x11/x11_capture_service.h"
#include "platform/x11/x11_overlay_stage.h"
#include "x11_rig.h"

namespace tests {

/// The capture service and the stage on a private desktop of 800 x 600 pixels. The application in
/// front is this process.
class CaptureRig {
  public:
    explicit CaptureRig(desktop::DesktopOptions options);

    [[nodiscard]] desktop::Desktop& desktop() { return desktop_; }
    [[nodiscard]] platform::x11::Connection& connection() { return *connection_; }
    [[nodiscard]] doubles::ManualMainQueue& queue() { return queue_; }
    [[nodiscard]] platform::x11::X11OverlayStage& stage() { return stage_; }
    [[nodiscard]] platform::x11::X11CaptureService& service() { return *service_; }
    void endService() { service_.reset(); }
    /// What the next listing says of the displays.
    void setLayout(platform::x11::DisplayLayout layout) { layout_ = std::move(layout); }

    bool runUntil(const std::function<bool()>& condition);
    capture::ShareableContent content(
        capture::DesktopWindows desktopWindows = capture::DesktopWindows::excluded,
        capture::WindowVisibility visibility = capture::WindowVisibility::onScreenOnly);
    /// The listed window, none when it is not listed.
    std::optional<capture::ShareableWindow> listed(
        xcb_window_t window,
        capture::WindowVisibility visibility = capture::WindowVisibility::onScreenOnly);
    /// Without the pointer, nothing scaled.
    base::Result<base::Image> capture(const capture::ContentFilter& filter,
                                      capture::StreamConfiguration configuration);
    base::Result<base::Image> captureAsIs(const capture::ContentFilter& filter,
                                          const capture::StreamConfiguration& configuration);
    /// A region of the first display, in points from its upper left corner, at one pixel a point.
    base::Result<base::Image> captureRegion(const base::Rect& rect);
    base::Result<base::Image> captureWindow(xcb_window_t window, capture::WindowShadow shadow);
    /// Waits until the window shows its colour at the place.
    void awaitPixel(int x, int y, std::uint32_t color);

  private:
    desktop::Desktop desktop_;
    std::unique_ptr<platform::x11::Connection> connection_;
    doubles::ManualMainQueue queue_;
    platform::x11::X11OverlayStage stage_;
    platform::x11::DisplayLayout layout_;
    std::unique_ptr<platform::x11::X11CaptureService> service_;
};

/// 0xAARRGGBB; the alpha is 255 where the image has none.
desktop::Picture pictureOf(const base::Image& image);

}  // namespace tests
