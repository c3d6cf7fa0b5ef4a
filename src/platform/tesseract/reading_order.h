#pragma once

#include <vector>

#include "platform/tesseract/background_model.h"
#include "platform/tesseract/text_line.h"

namespace platform::tesseract {

enum class Typeface { proportional, monospaced };

/// Puts rows in the order in which they are read: where a clean vertical gap runs through several
/// rows and both sides read like columns of prose, or stand on different backgrounds, the left side
/// comes first (an XY-cut, Nagy and Seth 1984, with Breuel's (2002) condition that a gap separates
/// columns only with text on both sides). Cells of tables stay in their rows.
class ReadingOrder {
  public:
    /// `background` must outlive this; `letterHeight` in pixels.
    ReadingOrder(const BackgroundModel& background, double letterHeight, Typeface typeface)
        : background_(background), letterHeight_(letterHeight), typeface_(typeface) {}

    [[nodiscard]] std::vector<TextLine> sort(const std::vector<TextLine>& rows) const;

  private:
    static constexpr int noCut = -1;

    /// Where the rows from `first` to `end` are cut into two columns, in pixels.
    [[nodiscard]] int cutOf(const std::vector<TextLine>& rows, std::size_t first,
                            std::size_t end) const;
    [[nodiscard]] bool separatesColumns(const std::vector<TextLine>& rows, std::size_t first,
                                        std::size_t end, int cut, int gap) const;

    [[nodiscard]] bool standOnDifferentSurfaces(const Box& left, const Box& right) const;

    const BackgroundModel& background_;
    double letterHeight_;
    Typeface typeface_;
};

}  // namespace platform::tesseract
