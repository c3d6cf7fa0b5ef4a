#pragma once

#include "capture/text_recognizer.h"

namespace platform {

/// Stands in where no recognition engine is installed: every call answers with the reason.
class UnavailableTextRecognizer final : public capture::TextRecognizer {
  public:
    base::Result<std::vector<capture::TextObservation>> recognize(
        const base::Image& image) override;
};

}  // namespace platform
