#pragma once

#include "capture/text_recognizer.h"

namespace platform::macos {

/// The system's own recogniser, in this process, at its defaults but for the accurate level.
class VisionTextRecognizer final : public capture::TextRecognizer {
  public:
    // Main thread, as every method here.
    /// There is nothing to get ready: the system keeps its recogniser.
    void prepare() override {}
    base::Result<std::vector<capture::TextObservation>> recognize(
        const base::Image& image) override;
};

}  // namespace platform::macos
