#pragma once

#include <memory>
#include <string>

#include "app/settings_store.h"
#include "base/capture_mode.h"
#include "base/clock.h"
#include "base/file_manager.h"
#include "base/image.h"
#include "base/log.h"
#include "base/main_queue.h"
#include "capture/capture_service.h"
#include "capture/captured_image.h"
#include "capture/confirmation.h"
#include "capture/pasteboard.h"
#include "capture/text_recognition.h"

namespace capture {

/// A captured picture on its way to the user.
struct Delivery {
    std::shared_ptr<CapturedImage> image;
    base::CaptureMode mode = base::CaptureMode::screenshot;
    /// The untouched pixels, for text recognition.
    base::Image pixelImage;
};

/// Brings a captured picture to the pasteboard and into a file, and confirms it with a notification
/// and a sound, or hands it to text recognition. Every step asks its own setting at that moment; a
/// step that fails prints one line and the next one still runs. Main thread.
class ImageDelivery {
  public:
    /// What it needs of the outside; everything outlives it.
    struct Mediator {
        Pasteboard& pasteboard;
        base::FileManager& fileManager;
        Confirmation& confirmation;
        TextRecognition& textRecognition;
        app::SettingsStore& settings;
        base::MainQueue& mainQueue;
        base::Clock& clock;
        base::Log& log;
    };
    explicit ImageDelivery(Mediator mediator) : mediator_(mediator) {}

    void deliverRegionImage(const Delivery& delivery);
    void deliverWindowImage(const Delivery& delivery, WindowID windowID);

    /// Writes the picture into the folder of the settings, under a name made from the local time. A
    /// file of that name is replaced.
    void saveScreenshot(CapturedImage& image);

  private:
    void deliver(const Delivery& delivery, const std::string& copiedLine);
    void copyToPasteboard(const std::shared_ptr<CapturedImage>& image);
    [[nodiscard]] std::string savedToFolderName() const;

    Mediator mediator_;
};

}  // namespace capture
