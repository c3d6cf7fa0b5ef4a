#pragma once

#include <string>

#include "app/settings_store.h"
#include "base/alive.h"
#include "base/clock.h"
#include "base/file_manager.h"
#include "base/image.h"
#include "base/log.h"
#include "base/main_queue.h"
#include "capture/confirmation.h"
#include "capture/pasteboard.h"
#include "capture/text_recognizer.h"

namespace capture {

/// Turns the picture of a region into text and brings it to the pasteboard and into a file. Every
/// step asks its own setting at that moment; a step that fails prints at most one line and the next
/// one still runs. Main thread.
class TextRecognition {
  public:
    /// What it needs of the outside; everything outlives it.
    struct Mediator {
        TextRecognizer& recognizer;
        Pasteboard& pasteboard;
        base::FileManager& fileManager;
        Confirmation& confirmation;
        app::SettingsStore& settings;
        base::MainQueue& mainQueue;
        base::Clock& clock;
        base::Log& log;
    };
    explicit TextRecognition(Mediator mediator) : mediator_(mediator) {}

    /// Reads the text in `image` (native pixels) before it returns; the text is handled in a later
    /// turn of the main queue. A recogniser that cannot do so is reported in one log line and
    /// nothing else happens.
    void performOCR(const base::Image& image);
    /// Delivers a text; an empty one, too.
    void handleOCRResult(const std::string& text);
    /// Writes the whole text into a file that is named after its first words and replaces one of
    /// that name. A text without anything but white space makes no file.
    void saveOCRText(const std::string& text);

  private:
    Mediator mediator_;
    base::Alive alive_;
};

}  // namespace capture
