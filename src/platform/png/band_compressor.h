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

/// Filters and compresses bands of rows, one after the other, each into whole IDAT chunks, in a way
/// that its content decides. The chunks of all bands in their order, between a stream header and a
/// checksum, are one valid stream, whoever compressed them.
///
/// The constructor takes the memory; `run` may then be called on any thread, by one at a time, and
/// holds no more than a few rows at a time beside its output.
class BandCompressor {
  public:
    /// Bands have at most `largestBand` rows. `rows` must outlive this.
    BandCompressor(const PixelRows& rows, int largestBand);

    /// Appends the chunks to `file` and returns the Adler-32 of the filtered bytes.
    std::uint32_t run(RowRange band, BandPosition position, std::vector<std::uint8_t>& file);

  private:
    std::uint32_t compressFast(RowRange band, BandPosition position,
                               std::vector<std::uint8_t>& file);
    std::uint32_t compressSparse(RowRange band, BandPosition position,
                                 std::vector<std::uint8_t>& file);
    std::size_t sizeOfChangedRows(RowRange band);
    template <typename Take>
    std::uint32_t filterAll(RowRange band, Filter filter, Take take);

    RowFilter rows_;
    Deflater deflater_;
    SparseCompressor sparse_;
};

}  // namespace platform::png
