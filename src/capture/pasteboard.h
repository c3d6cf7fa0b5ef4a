#pragma once

#include <memory>
#include <string>

#include "capture/captured_image.h"

namespace capture {

/// The general pasteboard. Main thread.
class Pasteboard {
  public:
    virtual ~Pasteboard() = default;
    /// Takes the pasteboard over and empties it.
    virtual void clearContents() = 0;
    /// Offers one picture. It is owned by this program when the call returns; the PNG form is made
    /// when it is first asked for. Shared, because the file is written from the same bytes.
    virtual void writeImage(std::shared_ptr<CapturedImage> image) = 0;
    /// Offers one plain string, UTF-8.
    virtual void writeString(const std::string& text) = 0;
};

}  // namespace capture
