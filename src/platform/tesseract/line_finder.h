#pragma once

#include <vector>

#include "platform/tesseract/box_index.h"
#include "platform/tesseract/text_line.h"

namespace platform::tesseract {

/// Rows of segments from the top, those of a row from the left.
///
/// Letters are chained from left to right to the segment whose rows they share most (as the
/// nearest-neighbour chains of O'Gorman's docstrum, 1993, without its skew), small marks then go to
/// the segment nearest to them, and segments on the same height become one row.
class LineFinder {
  public:
    /// `letterHeight` in pixels, as the glyph filter measured it; no segment reaches across one of
    /// the `dividers`.
    LineFinder(double letterHeight, std::vector<Box> dividers);

    [[nodiscard]] std::vector<TextLine> find(std::vector<Glyph> glyphs) const;

  private:
    // Each keeps `index` up to date: the segments by their place, under their numbers.
    [[nodiscard]] std::vector<Segment> chain(const std::vector<Glyph>& letters,
                                             BoxIndex& index) const;
    void attachMarks(const std::vector<Glyph>& marks, std::vector<Segment>& segments,
                     BoxIndex& index) const;
    /// Adds the marks that are near a segment to it, in their order; returns the others, the other
    /// way round.
    [[nodiscard]] std::vector<Glyph> withoutNeighbors(const std::vector<Glyph>& marks,
                                                      std::vector<Segment>& segments,
                                                      const std::vector<double>& baselines,
                                                      BoxIndex& index) const;
    /// The number of the segment that the mark belongs to, or how many there are.
    [[nodiscard]] std::size_t nearestTo(const Glyph& mark, const std::vector<Segment>& segments,
                                        const std::vector<double>& baselines,
                                        const BoxIndex& index) const;
    void mergeOverlapping(std::vector<Segment>& segments, BoxIndex& index) const;
    /// 0 for marks alone.
    [[nodiscard]] double baselineOf(const Segment& segment) const;
    [[nodiscard]] bool isBesideBaseline(const Glyph& mark, double baseline) const;
    [[nodiscard]] static std::vector<TextLine> rowsOf(std::vector<Segment> segments);
    [[nodiscard]] double largestGap() const { return 1.6 * letterHeight_; }
    [[nodiscard]] bool areDivided(const Box& one, const Box& other) const;

    double letterHeight_;
    /// From the left.
    std::vector<Box> dividers_;
};

}  // namespace platform::tesseract
