#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/png/deflater.h"
#include "platform/png/pixel_rows.h"

namespace platform::png {

/// Rows from `first` up to, not including, `end`, counted from the top.
struct RowRange {
    int first = 0;
    int end = 0;
};

/// Whether another band's compressed data follow this one's.
enum class BandPosition { followed, last };

/// Filters and compresses a band of rows into whole IDAT chunks. The chunks of all bands one after
/// the other, between a stream header and a checksum, are one valid stream.
///
/// The constructor takes the memory; `run` may then be called once, on any thread, and holds no
/// more than a few rows at a time beside its output.
class BandCompressor {
  public:
    /// `rows` must outlive this.
    BandCompressor(const PixelRows& rows, RowRange range, BandPosition position);

    /// Appends the chunks to `file`.
    void run(std::vector<std::uint8_t>& file);

    /// Adler-32 of the filtered bytes. After `run`.
    [[nodiscard]] std::uint32_t checksum() const { return checksum_; }
    /// How many filtered bytes the band has.
    [[nodiscard]] std::size_t filteredSize() const;

  private:
    enum class Filter : std::uint8_t { none = 0, up = 2 };

    Filter chooseFilter();
    std::size_t compressedSize(RowRange range, Filter filter);
    std::span<const std::uint8_t> filterRows(RowRange range, Filter filter);

    const PixelRows& rows_;
    RowRange range_;
    BandPosition position_;
    int rowsPerBlock_;
    Deflater deflater_;
    std::vector<std::uint8_t> block_;
    std::vector<std::uint8_t> row_;
    std::vector<std::uint8_t> rowAbove_;
    std::uint32_t checksum_ = 1;
};

}  // namespace platform::png
