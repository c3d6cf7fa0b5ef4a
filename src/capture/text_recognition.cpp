#include "capture/text_recognition.h"

#include <string>

namespace capture {

void TextRecognition::performOCR(const base::Image& image) {
    const auto observations = mediator_.recognizer.recognize(image);
    if (!observations) {
        // The line ends the sentence itself.
        std::string reason = observations.error().sentence;
        if (reason.ends_with('.')) {
            reason.pop_back();
        }
        mediator_.log.line("Unable to perform OCR: " + reason + ".");
    }
}

}  // namespace capture
