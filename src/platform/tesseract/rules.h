#pragma once

#include <vector>

#include "platform/tesseract/connected_components.h"
#include "platform/tesseract/page_planes.h"

namespace platform::tesseract {

/// The straight thin lines of a page: grids of tables, frames of fields, separators, underlines.
///
/// Found by run lengths, as a morphological opening with a long line would (Gatos and others,
/// 2005): longer than any stroke of a letter, and thin nearly everywhere along their length.
class Rules {
  public:
    /// Heights in pixels, above 0.
    Rules(const Mask& mask, double letterHeight, double capitalHeight);

    /// Takes them out of both. Where a stroke crosses a lying rule it stays whole; crumbs of
    /// corners and arrows that hung on a rule go with it.
    void removeFrom(Mask& mask, InkPlane& ink) const;

    /// Those that stand, from the left: text on their two sides is not one word.
    [[nodiscard]] const std::vector<Box>& upright() const { return upright_; }
    [[nodiscard]] bool isEmpty() const { return upright_.empty() && lying_.empty(); }

  private:
    /// What happens to a pixel: of a rule it goes, but for a lying one that a stroke crosses.
    enum class Removal : std::uint8_t { none, lying, upright, crossed };

    void findLying(const Mask& mask, double letterHeight);
    void findUpright(const Mask& mask, double letterHeight, double capitalHeight);
    [[nodiscard]] Plane<Removal> marked(int width, int height) const;
    static bool isCrossed(const Mask& mask, const Plane<Removal>& removals, int x, int y);
    void removeCrumbs(const Plane<Removal>& removals, Mask& mask, InkPlane& ink) const;
    static bool hangsOn(const Plane<Removal>& removals, const Run& run);

    double letterHeight_;
    std::vector<Box> lying_;
    std::vector<Box> upright_;
};

}  // namespace platform::tesseract
