#pragma once

#include <vector>

#include "platform/tesseract/text_line.h"

namespace platform::tesseract {

/// What stands on one side of a vertical gap.
struct ColumnSide {
    int rows = 0;
    int segments = 0;
    /// The sum of the rows' widths, in pixels.
    double width = 0;
    Box box;
};

/// Columns of pixels without text through several rows, from `left` up to, not including, `right`.
struct ColumnGap {
    int left = 0;
    int right = 0;
    ColumnSide leftSide;
    ColumnSide rightSide;
    int rowsWithBoth = 0;

    [[nodiscard]] int width() const { return right - left; }
    [[nodiscard]] int middle() const { return (left + right) / 2; }
};

/// The vertical gaps through a block of rows, kept up to date while rows are added below it, so
/// that all blocks from one row on are looked at in one pass.
class ColumnGaps {
  public:
    /// Narrower gaps are forgotten; in pixels.
    explicit ColumnGaps(double narrowest);

    void add(const TextLine& row);
    /// From the left; the first and the last are the page's margins.
    [[nodiscard]] const std::vector<ColumnGap>& all() const { return gaps_; }

  private:
    double narrowest_;
    std::vector<ColumnGap> gaps_;
};

}  // namespace platform::tesseract
