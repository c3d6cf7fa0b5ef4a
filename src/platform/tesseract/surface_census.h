#pragma once

#include <optional>
#include <vector>

#include "platform/tesseract/background_model.h"

namespace platform::tesseract {

/// Which surface a part of the page mostly shows, in a time that does not depend on the size of the
/// part: summed-area tables (Crow, 1984) over samples of the page's commonest colours.
class SurfaceCensus {
  public:
    explicit SurfaceCensus(const BackgroundModel& background);

    /// The colour of the surface that most of a box shows, if one does and is among the page's
    /// commonest.
    [[nodiscard]] std::optional<Color> dominantIn(const Box& box) const;

  private:
    struct Surface {
        Color color;
        /// Samples above and to the left of each.
        Plane<int> counts;
    };

    [[nodiscard]] int samplesBefore(int position) const { return (position + step_ - 1) / step_; }

    /// Pixels between two samples.
    int step_;
    std::vector<Surface> surfaces_;
};

}  // namespace platform::tesseract
