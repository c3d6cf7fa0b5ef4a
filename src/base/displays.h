#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "base/geometry.h"
#include "base/image.h"

namespace base {

using DisplayID = std::uint32_t;

/// One display of the desktop.
struct Screen {
    DisplayID displayID = 0;
    /// Screen space, points: bottom-left origin of the primary display, y up.
    Rect frame;
    /// Native pixels for each point.
    double backingScaleFactor = 1.0;
    /// Null when the display has no colour profile.
    std::shared_ptr<const ColorSpace> colorSpace;
};

/// The displays of the desktop. Main thread.
class Displays {
  public:
    virtual ~Displays() = default;
    /// Read afresh at each call, the primary display first; may be empty.
    [[nodiscard]] virtual std::vector<Screen> screens() = 0;
    /// Calls `handler` on the main thread after a display came, went, moved or changed its size.
    /// One handler; an empty one ends the calls.
    virtual void setChangeHandler(std::function<void()> handler) = 0;
};

}  // namespace base
