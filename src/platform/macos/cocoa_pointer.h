#pragma once

#include "overlay/pointer.h"

namespace platform::macos {

/// The mouse pointer.
class CocoaPointer final : public overlay::Pointer {
  public:
    // Main thread, as every method here.
    void setCursor(overlay::Cursor cursor) override;
    [[nodiscard]] std::optional<base::Point> location() override;
};

}  // namespace platform::macos
