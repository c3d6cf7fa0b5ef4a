#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/png/pixel_rows.h"

namespace platform::png {

/// Rows from `first` up to, not including, `end`, counted from the top.
struct RowRange {
    int first = 0;
    int end = 0;
};

/// How a row is written: as it is, or as its differences from the row above, or from the mean of
/// that and the pixel to the left. The values are those of the file format.
enum class Filter : std::uint8_t { none = 0, up = 2, average = 3 };

/// Filters rows of a picture, a block at a time, each with its filter byte in front. All memory is
/// taken by the constructor.
class RowFilter {
  public:
    /// Blocks have at most `largestBlock` rows. `rows` must outlive this.
    RowFilter(const PixelRows& rows, int largestBlock);

    /// Rows of a block: as many as stay in the second-level cache, at least one.
    [[nodiscard]] int rowsPerBlock() const { return rowsPerBlock_; }
    /// Of a filtered row, with its filter byte.
    [[nodiscard]] std::size_t bytesPerRow() const { return rows_.bytesPerRow() + 1; }
    /// `range` has at most `rowsPerBlock` rows; what is returned is valid until the next call.
    std::span<const std::uint8_t> filter(RowRange range, Filter filter);

  private:
    const PixelRows& rows_;
    int rowsPerBlock_;
    std::vector<std::uint8_t> block_;
    std::vector<std::uint8_t> row_;
    std::vector<std::uint8_t> rowAbove_;
};

}  // namespace platform::png
