#pragma once

#include <optional>
#include <vector>

#include "platform/tesseract/background_model.h"
#include "platform/tesseract/column_gaps.h"
#include "platform/tesseract/surface_census.h"
#include "platform/tesseract/text_line.h"

namespace platform::tesseract {

enum class Typeface { proportional, monospaced };

/// Puts rows in the order in which they are read: where a clean vertical gap runs through several
/// rows and both sides read like columns of prose, or stand on different backgrounds, the left side
/// comes first (an XY-cut, Nagy and Seth 1984, with Breuel's (2002) condition that a gap separates
/// columns only with text on both sides). Cells of tables stay in their rows.
class ReadingOrder {
  public:
    /// `letterHeight` in pixels.
    ReadingOrder(const BackgroundModel& background, double letterHeight, Typeface typeface)
        : surfaces_(background), letterHeight_(letterHeight), typeface_(typeface) {}

    /// `rows` come from the top, their segments from the left.
    [[nodiscard]] std::vector<TextLine> sort(const std::vector<TextLine>& rows) const;

  private:
    /// Rows up to, not including, `end` that are cut into two columns at `cut`, in pixels.
    struct Block {
        std::size_t end;
        int cut;
    };

    /// The longest one that begins with the row `first`.
    [[nodiscard]] std::optional<Block> blockFrom(const std::vector<TextLine>& rows,
                                                 std::size_t first) const;
    [[nodiscard]] bool separatesColumns(const ColumnGap& gap) const;

    SurfaceCensus surfaces_;
    double letterHeight_;
    Typeface typeface_;
};

}  // namespace platform::tesseract
