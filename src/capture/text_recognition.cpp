#include "capture/text_recognition.h"

namespace capture {

void TextRecognition::performOCR(const base::Image& image) {
    const auto observations = mediator_.recognizer.recognize(image);
    if (!observations) {
        mediator_.log.line("Unable to perform OCR: " + observations.error().sentence + ".");
    }
}

}  // namespace capture
