#include "platform/unavailable_text_recognizer.h"

namespace platform {

base::Result<std::vector<capture::TextObservation>> UnavailableTextRecognizer::recognize(
    const base::Image& /*image*/) {
    return base::Error{base::ErrorKind::unavailable,
                       "Text recognition is not part of this build of Lumaframe."};
}

}  // namespace platform
