#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/alive.h"
#include "base/main_queue.h"
#include "capture/capture_service.h"
#include "platform/x11/capture_backing.h"
#include "platform/x11/connection.h"
#include "platform/x11/display_layout.h"
#include "platform/x11/overlay_stage.h"
#include "platform/x11/screen_reader.h"
#include "platform/x11/window_capture.h"

namespace platform::x11 {

/// Reads the X screen and its windows. Main thread; the completions come through the main queue.
///
/// The overlay is kept out by waiting until it has left the screen, or by cutting the picture from
/// the snapshot that it shows; windows to leave out are therefore not looked at one by one. The
/// pointer is never in the picture: the server keeps it apart from the screen.
class X11CaptureService final : public capture::CaptureService {
  public:
    using LayoutSource = std::function<DisplayLayout()>;

    /// The connection, the main queue and the stage outlive it. `layout` gives the displays of the
    /// moment.
    X11CaptureService(Connection& connection, base::MainQueue& mainQueue, OverlayStage& stage,
                      LayoutSource layout);

    void shareableContent(capture::DesktopWindows desktopWindows,
                          capture::WindowVisibility visibility,
                          ContentCompletion completion) override;
    void captureImage(const capture::ContentFilter& filter,
                      const capture::StreamConfiguration& configuration,
                      ImageCompletion completion) override;

  private:
    using ImageResult = base::Result<base::Image>;

    void captureDisplay(const capture::ShareableDisplay& display,
                        const capture::StreamConfiguration& configuration,
                        ImageCompletion completion);
    void captureWindow(const capture::ShareableWindow& window,
                       const capture::StreamConfiguration& configuration,
                       ImageCompletion completion);
    [[nodiscard]] ImageResult readDisplay(const DisplayBacking& backing, const NativeRect& region,
                                          std::shared_ptr<const base::ColorSpace> colorSpace);
    [[nodiscard]] std::vector<PixelSource> sourcesOf(const std::vector<DisplayBacking>& displays);
    void finish(ImageResult result, ImageCompletion completion);

    Connection& connection_;
    base::MainQueue& mainQueue_;
    OverlayStage& stage_;
    LayoutSource layout_;
    ScreenReader reader_;
    WindowCapture windowCapture_;
    base::Alive alive_;
};

}  // namespace platform::x11
