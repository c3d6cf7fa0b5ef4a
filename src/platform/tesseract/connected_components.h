#pragma once

#include <cstdint>
#include <vector>

#include "platform/tesseract/page_planes.h"

namespace platform::tesseract {

/// Pixels of one row, from `left` up to, not including, `right`.
struct Run {
    int y = 0;
    int left = 0;
    int right = 0;
};

/// Set pixels that touch each other at a side or a corner.
struct Component {
    Box box;
    int pixelCount = 0;
    /// Where its runs are in `ConnectedComponents::runs`.
    std::size_t firstRun = 0;
    std::size_t runCount = 0;
};

/// The connected components of a mask (eight neighbours), found in one pass over its runs with a
/// union-find over their labels (Rosenfeld and Pfaltz, 1966).
class ConnectedComponents {
  public:
    explicit ConnectedComponents(const Mask& mask);

    [[nodiscard]] const std::vector<Component>& all() const { return components_; }
    /// The runs of one component, from the top.
    [[nodiscard]] const Run* runsBegin(const Component& component) const {
        return runs_.data() + component.firstRun;
    }
    [[nodiscard]] const Run* runsEnd(const Component& component) const {
        return runsBegin(component) + component.runCount;
    }

  private:
    std::vector<Component> components_;
    std::vector<Run> runs_;
};

}  // namespace platform::tesseract
