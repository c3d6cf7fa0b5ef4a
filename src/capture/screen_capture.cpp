#include "capture/screen_capture.h"

#include <algorithm>
#include <memory>

#include "app/settings_keys.h"
#include "capture/region_configuration.h"

namespace capture {

void ScreenCapture::captureRegion(const RegionCaptureRequest& request) {
    mediator_.service.shareableContent(DesktopWindows::included, WindowVisibility::onScreenOnly,
                                       [this, request](const auto& content, const auto& error) {
                                           handleRegionContent(request, content, error);
                                       });
}

void ScreenCapture::handleRegionContent(const RegionCaptureRequest& request,
                                        const std::optional<ShareableContent>& content,
                                        const std::optional<base::Error>& error) {
    if (!content || error) {
        mediator_.log.line("Error getting shareable content: " + base::describe(error));
        return;
    }
    const auto display = displayForSelection(content->displays, request.screenRect);
    if (!display) {
        mediator_.log.line("No display found for selection");
        return;
    }
    const DisplayFilter filter{*display,
                               windowsToExclude(content->windows, mediator_.mainBundleIdentifier)};
    mediator_.service.captureImage(
        filter,
        regionConfiguration(sourceRect(request.screenRect, display->frame), request.scaleFactor,
                            request.colorSpaceName),
        [this, request](const auto& image, const auto& failure) {
            handleRegionImage(request, image, failure);
        });
}

void ScreenCapture::handleRegionImage(const RegionCaptureRequest& request,
                                      const std::optional<base::Image>& image,
                                      const std::optional<base::Error>& error) {
    if (!image || error) {
        mediator_.log.line("Error capturing screenshot: " + base::describe(error));
        return;
    }
    const auto captured =
        std::make_shared<CapturedImage>(*image, request.selectionRect.size, mediator_.encoder);
    mediator_.mainQueue.post([this, captured, pixelImage = *image, request] {
        mediator_.delivery.deliverRegionImage({captured, request.mode, pixelImage});
    });
}

void ScreenCapture::captureWindow(const WindowCaptureRequest& request) {
    // A window that is not listed, and a list that cannot be had, end the capture without a word:
    // the window was closed while the user pointed at it.
    mediator_.service.shareableContent(DesktopWindows::excluded, WindowVisibility::all,
                                       [this, request](const auto& content, const auto&) {
                                           handleWindowContent(request, content);
                                       });
}

void ScreenCapture::handleWindowContent(const WindowCaptureRequest& request,
                                        const std::optional<ShareableContent>& content) {
    if (!content) {
        return;
    }
    const auto window = std::find_if(
        content->windows.begin(), content->windows.end(),
        [&](const ShareableWindow& listed) { return listed.windowID == request.windowID; });
    if (window == content->windows.end()) {
        return;
    }
    StreamConfiguration configuration;
    configuration.cursor = CursorVisibility::hidden;
    configuration.scaling = Scaling::none;
    configuration.pixelFormat = PixelFormat::bgra;
    configuration.singleWindowShadow = mediator_.settings.boolForKey(app::keys::captureShadows)
                                           ? WindowShadow::included
                                           : WindowShadow::ignored;
    configuration.colorSpaceName = request.colorSpaceName;
    mediator_.service.captureImage(WindowFilter{*window}, configuration,
                                   [this, request](const auto& image, const auto& error) {
                                       handleWindowImage(request, image, error);
                                   });
}

void ScreenCapture::handleWindowImage(const WindowCaptureRequest& request,
                                      const std::optional<base::Image>& image,
                                      const std::optional<base::Error>& error) {
    if (!image || error) {
        mediator_.log.line("Error capturing window: " + base::describe(error));
        return;
    }
    const base::Size pointSize{image->width() / request.scaleFactor,
                               image->height() / request.scaleFactor};
    const auto captured = std::make_shared<CapturedImage>(*image, pointSize, mediator_.encoder);
    mediator_.mainQueue.post([this, captured, pixelImage = *image, request] {
        mediator_.delivery.deliverWindowImage({captured, request.mode, pixelImage},
                                              request.windowID);
    });
}

}  // namespace capture
