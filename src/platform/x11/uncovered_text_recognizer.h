#pragma once

#include "capture/text_recognizer.h"
#include "platform/x11/late_requests.h"

namespace platform::x11 {

/// Reads with another recogniser, after the overlay has left the screen: a reading takes up to some
/// seconds, and when nothing was put on the clipboard the overlay's end would still be kept back.
/// Main thread.
class UncoveredTextRecognizer final : public capture::TextRecognizer {
  public:
    /// Both outlive this.
    UncoveredTextRecognizer(capture::TextRecognizer& recognizer, LateRequests& lateRequests)
        : recognizer_(recognizer), lateRequests_(lateRequests) {}

    void prepare() override { recognizer_.prepare(); }
    base::Result<std::vector<capture::TextObservation>> recognize(
        const base::Image& image) override {
        lateRequests_.sendAll();
        return recognizer_.recognize(image);
    }

  private:
    capture::TextRecognizer& recognizer_;
    LateRequests& lateRequests_;
};

}  // namespace platform::x11
