#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/png/deflater.h"
#include "platform/png/pixel_rows.h"
#include "platform/png/row_filter.h"
#include "platform/png/sparse_compressor.h"

namespace platform::png {

/// Whether another band's compressed data follow this one's.
enum class BandPosition { followed, last };

/// Filters and compresses a band of rows into whole IDAT chunks, in a way that its content decides.
/// The chunks of all bands one after the other, between a stream header and a checksum, are one
/// valid stream.
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
    Filter chooseFilter();
    std::size_t compressedSize(RowRange range, Filter filter);
    void compressFast(std::vector<std::uint8_t>& file);
    void compressSparse(std::vector<std::uint8_t>& file);
    template <typename Take>
    void filterAll(Filter filter, Take take);

    RowRange range_;
    BandPosition position_;
    RowFilter rows_;
    Deflater deflater_;
    SparseCompressor sparse_;
    std::uint32_t checksum_ = 1;
};

}  // namespace platform::png
