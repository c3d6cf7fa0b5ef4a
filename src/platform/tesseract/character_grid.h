#pragma once

#include <cmath>
#include <map>
#include <vector>

#include "platform/tesseract/text_line.h"

namespace platform::tesseract {

/// The cells of a line of monospaced text and what stands in them.
class CharacterGrid {
  public:
    struct Cell {
        int left = 0;
        int right = 0;
    };

    /// `glyphs` from the left, not empty; `pitch` and `letterHeight` in pixels.
    CharacterGrid(const std::vector<Glyph>& glyphs, double pitch, double letterHeight);

    /// The inked columns of each cell that has ink, by the cell's number.
    [[nodiscard]] const std::map<int, Cell>& cells() const { return cells_; }
    [[nodiscard]] double pitch() const { return pitch_; }
    /// The first column of a cell.
    [[nodiscard]] int leftOf(int cell) const {
        return static_cast<int>(std::lround(origin_ + (cell - 0.5) * pitch_));
    }

  private:
    void fit(const std::vector<Glyph>& glyphs, double letterHeight);
    void fill(const std::vector<Glyph>& glyphs);
    void put(int cell, int left, int right);

    double pitch_;
    /// The middle of cell 0.
    double origin_ = 0;
    std::map<int, Cell> cells_;
};

}  // namespace platform::tesseract
