#include "capture/image_delivery.h"

#include <optional>

#include "app/settings_keys.h"
#include "base/file_path.h"

namespace capture {

void ImageDelivery::deliverRegionImage(const Delivery& delivery) {
    deliver(delivery, "Retina screenshot copied!");
}

void ImageDelivery::deliverWindowImage(const Delivery& delivery, WindowID windowID) {
    deliver(delivery, "Window screenshot copied! ID: " + std::to_string(windowID));
}

void ImageDelivery::deliver(const Delivery& delivery, const std::string& copiedLine) {
    if (mediator_.settings.boolForKey(app::keys::copyToClipboard)) {
        copyToPasteboard(delivery.image);
        mediator_.log.line(copiedLine);
    }
    saveScreenshot(*delivery.image);
    switch (delivery.mode) {
        case base::CaptureMode::screenshot:
            if (mediator_.settings.boolForKey(app::keys::showNotifications)) {
                mediator_.confirmation.postNotification("Screenshot Captured",
                                                        "Saved to " + savedToFolderName());
            }
            if (mediator_.settings.boolForKey(app::keys::playSounds)) {
                mediator_.confirmation.playSound("Hero");
            }
            return;
        case base::CaptureMode::ocr:
            mediator_.textRecognition.performOCR(delivery.pixelImage);
            return;
    }
}

void ImageDelivery::copyToPasteboard(const std::shared_ptr<CapturedImage>& image) {
    mediator_.pasteboard.clearContents();
    mediator_.pasteboard.writeImage(image);
    // A picture that no file step encodes would keep its raw pixels (33 MB at 4K) for as long as it
    // is offered; the encoded form is a fifth of that, and ready when somebody pastes.
    mediator_.mainQueue.post([weakImage = std::weak_ptr<CapturedImage>(image)] {
        if (const auto offered = weakImage.lock()) {
            offered->pngRepresentation();
        }
    });
}

std::string ImageDelivery::savedToFolderName() const {
    const std::optional<std::string> path =
        mediator_.settings.stringForKey(app::keys::screenshotSavePath);
    return path && !path->empty() ? base::lastPathComponent(*path) : "Downloads";
}

void ImageDelivery::saveScreenshot(CapturedImage& image) {
    if (!mediator_.settings.boolForKey(app::keys::saveToDownloads)) {
        return;
    }
    const std::string fileName =
        "Screenshot " + base::fileNameDate(mediator_.clock.localTime()) + ".png";
    std::string folder =
        mediator_.settings.stringForKey(app::keys::screenshotSavePath).value_or("");
    if (folder.empty()) {
        const auto downloads = mediator_.fileManager.downloadsDirectories();
        if (downloads.empty()) {
            mediator_.log.line("Could not find save directory");
            return;
        }
        folder = downloads.front();
    }
    const std::string target = base::appendingPathComponent(folder, fileName);
    const auto* png = image.pngRepresentation();
    if (png == nullptr) {
        mediator_.log.line("Failed to convert image to PNG");
        return;
    }
    const base::Status written = mediator_.fileManager.write(target, *png);
    if (written) {
        mediator_.log.line("Screenshot saved to: " + target);
    } else {
        mediator_.log.line("Failed to save screenshot: " + written.error().sentence);
    }
}

}  // namespace capture
