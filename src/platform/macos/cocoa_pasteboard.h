#pragma once

#include "capture/pasteboard.h"

namespace platform::macos {

/// The general pasteboard.
class CocoaPasteboard final : public capture::Pasteboard {
  public:
    // Main thread, as every method here.
    void clearContents() override;
    /// Writes the picture as an image object of its size in points; the system makes whatever form
    /// is asked for.
    void writeImage(std::shared_ptr<capture::CapturedImage> image) override;
    void writeString(const std::string& text) override;
};

}  // namespace platform::macos
