#pragma once

#include "base/alive.h"
#include "capture/capture_service.h"

namespace platform::macos {

/// The system's screen capture. It answers on a queue of its own, whenever it likes, and nothing
/// waits for it: an answer that never comes is a completion that never runs.
class ScreenCaptureKitCaptureService final : public capture::CaptureService {
  public:
    // Main thread, as every method here and the calls of the completions.
    void shareableContent(capture::DesktopWindows desktopWindows,
                          capture::WindowVisibility visibility,
                          ContentCompletion completion) override;
    void captureImage(const capture::ContentFilter& filter,
                      const capture::StreamConfiguration& configuration,
                      ImageCompletion completion) override;

  private:
    base::Alive alive_;
};

}  // namespace platform::macos
