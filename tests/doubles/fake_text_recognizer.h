#pragma once

#include <optional>
#include <vector>

#include "capture/text_recognizer.h"
#include "doubles/call_log.h"

namespace doubles {

/// Reads what the test has written. In a call log: "prepare", "recognize".
class FakeTextRecognizer final : public capture::TextRecognizer, public Recorder {
  public:
    void prepare() override { record("prepare"); }
    base::Result<std::vector<capture::TextObservation>> recognize(
        const base::Image& image) override {
        record("recognize");
        images.push_back(image);
        if (error) {
            return *error;
        }
        return observations;
    }

    std::vector<capture::TextObservation> observations;
    std::optional<base::Error> error;
    std::vector<base::Image> images;
};

}  // namespace doubles
