#pragma once

#include "base/image.h"
#include "base/log.h"
#include "capture/text_recognizer.h"

namespace capture {

/// Turns the picture of a region into text. Main thread.
class TextRecognition {
  public:
    /// What it needs of the outside; everything outlives it.
    struct Mediator {
        TextRecognizer& recognizer;
        base::Log& log;
    };
    explicit TextRecognition(Mediator mediator) : mediator_(mediator) {}

    /// Reads the text in `image` (native pixels) before it returns. A recogniser that cannot do so
    /// is reported in one log line and nothing else happens.
    void performOCR(const base::Image& image);

  private:
    Mediator mediator_;
};

}  // namespace capture
