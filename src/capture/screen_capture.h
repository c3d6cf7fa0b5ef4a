#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "app/settings_store.h"
#include "base/capture_mode.h"
#include "base/geometry.h"
#include "base/log.h"
#include "base/main_queue.h"
#include "capture/capture_service.h"
#include "capture/image_delivery.h"
#include "capture/image_encoder.h"

namespace capture {

/// What the capture of a region carries from its start to its delivery.
struct RegionCaptureRequest {
    /// The selection in screen space, points.
    base::Rect screenRect;
    /// The selection in the view's own space; its size is the point size of the picture.
    base::Rect selectionRect;
    double scaleFactor = 2.0;
    std::optional<std::string> colorSpaceName;
    base::CaptureMode mode = base::CaptureMode::screenshot;
    /// Keeps the view that was selected in alive until delivery.
    std::shared_ptr<const void> view;
};

/// What the capture of a window carries from its start to its delivery.
struct WindowCaptureRequest {
    WindowID windowID = 0;
    double scaleFactor = 2.0;
    std::optional<std::string> colorSpaceName;
    base::CaptureMode mode = base::CaptureMode::screenshot;
    /// Keeps the view that was selected in alive until delivery.
    std::shared_ptr<const void> view;
};

/// Turns a finished selection into a picture and has it delivered. Each capture is a chain of
/// callbacks of its own; nothing is cancelled, retried or shared. Main thread.
class ScreenCapture {
  public:
    /// What it needs of the outside; everything outlives it.
    struct Mediator {
        CaptureService& service;
        ImageEncoder& encoder;
        ImageDelivery& delivery;
        app::SettingsStore& settings;
        base::MainQueue& mainQueue;
        base::Log& log;
        /// The identifier of this program, by which its own windows are known.
        std::optional<std::string> mainBundleIdentifier;
    };
    explicit ScreenCapture(Mediator mediator) : mediator_(std::move(mediator)) {}

    /// Captures a part of the display that the selection overlaps. Returns at once.
    void captureRegion(const RegionCaptureRequest& request);
    /// Captures one window by itself. Returns at once.
    void captureWindow(const WindowCaptureRequest& request);

  private:
    void handleRegionContent(const RegionCaptureRequest& request,
                             const std::optional<ShareableContent>& content,
                             const std::optional<base::Error>& error);
    void handleRegionImage(const RegionCaptureRequest& request,
                           const std::optional<base::Image>& image,
                           const std::optional<base::Error>& error);
    void handleWindowContent(const WindowCaptureRequest& request,
                             const std::optional<ShareableContent>& content);
    void handleWindowImage(const WindowCaptureRequest& request,
                           const std::optional<base::Image>& image,
                           const std::optional<base::Error>& error);

    Mediator mediator_;
};

}  // namespace capture
