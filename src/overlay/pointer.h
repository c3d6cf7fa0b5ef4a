#pragma once

#include <optional>

#include "base/geometry.h"

namespace overlay {

enum class Cursor { arrow, crosshair, pointingHand };

/// The mouse pointer. Main thread.
class Pointer {
  public:
    virtual ~Pointer() = default;
    /// Shows `cursor` over the overlay; the arrow stands for whatever other windows want to show.
    virtual void setCursor(Cursor cursor) = 0;
    /// In top-left space; none when the system does not tell.
    [[nodiscard]] virtual std::optional<base::Point> location() = 0;
};

}  // namespace overlay
