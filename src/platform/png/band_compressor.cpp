#include "platform/png/band_compressor.h"

#include <isa-l/igzip_lib.h>

#include <algorithm>

#include "platform/png/png_chunks.h"

namespace platform::png {

namespace {

/// The filter is chosen by compressing this many strips of rows both ways: about 3 % of a band of a
/// 4K picture, so that the trial costs about 1 ms.
constexpr int trialStrips = 4;
constexpr int trialRows = 8;

/// A band that shrinks to less than one in this many bytes is compressed again, thoroughly: a 4K
/// screen of panels to 1 in 240 at first and 1 in 590 then, for about 10 ms. A page of text is at
/// 1 in 15.
constexpr std::size_t sparseRatio = 128;

}  // namespace

BandCompressor::BandCompressor(const PixelRows& rows, RowRange range, BandPosition position)
    : range_(range),
      position_(position),
      rows_(rows, range.end - range.first),
      sparse_(rows_.bytesPerRow()) {}

std::size_t BandCompressor::filteredSize() const {
    return rows_.bytesPerRow() * static_cast<std::size_t>(range_.end - range_.first);
}

void BandCompressor::run(std::vector<std::uint8_t>& file) {
    const std::size_t start = file.size();
    compressFast(file);
    if (file.size() - start < filteredSize() / sparseRatio) {
        file.resize(start);
        compressSparse(file);
    }
}

Filter BandCompressor::chooseFilter() {
    const int count = range_.end - range_.first;
    const int strips = count > trialStrips * trialRows ? trialStrips : 1;
    std::size_t plain = 0;
    std::size_t up = 0;
    for (int strip = 0; strip < strips; ++strip) {
        // From the middle of each part of the band: the edges of a screen are often bare.
        const auto middle = static_cast<std::int64_t>(count) * (2L * strip + 1) / (2L * strips);
        const int first = range_.first + std::max(static_cast<int>(middle) - trialRows / 2, 0);
        const RowRange range{first, std::min(first + trialRows, range_.end)};
        plain += compressedSize(range, Filter::none);
        up += compressedSize(range, Filter::up);
    }
    return up < plain ? Filter::up : Filter::none;
}

std::size_t BandCompressor::compressedSize(RowRange range, Filter filter) {
    std::size_t size = 0;
    const auto count = [&size](std::span<const std::uint8_t> piece) { size += piece.size(); };
    deflater_.restart();
    for (int first = range.first; first < range.end; first += rows_.rowsPerBlock()) {
        const RowRange part{first, std::min(first + rows_.rowsPerBlock(), range.end)};
        deflater_.compress(rows_.filter(part, filter),
                           part.end == range.end ? Deflater::Flush::finish : Deflater::Flush::none,
                           count);
    }
    return size;
}

void BandCompressor::compressFast(std::vector<std::uint8_t>& file) {
    const auto appendData = [&file](std::span<const std::uint8_t> piece) {
        appendChunk(file, ChunkType::imageData, piece);
    };
    const auto lastFlush =
        position_ == BandPosition::last ? Deflater::Flush::finish : Deflater::Flush::full;
    const Filter filter = chooseFilter();
    deflater_.restart();
    filterAll(filter, [&](std::span<const std::uint8_t> filtered, int end) {
        deflater_.compress(filtered, end == range_.end ? lastFlush : Deflater::Flush::none,
                           appendData);
    });
}

void BandCompressor::compressSparse(std::vector<std::uint8_t>& file) {
    const std::size_t start = beginChunk(file, ChunkType::imageData);
    const auto append = [&file](std::span<const std::uint8_t> piece) {
        file.insert(file.end(), piece.begin(), piece.end());
    };
    filterAll(Filter::up, [&](std::span<const std::uint8_t> filtered, int /*end*/) {
        sparse_.compress(filtered, append);
    });
    sparse_.end(position_ == BandPosition::last ? SparseCompressor::Ending::finished
                                                : SparseCompressor::Ending::joined,
                append);
    endChunk(file, start);
}

template <typename Take>
void BandCompressor::filterAll(Filter filter, Take take) {
    checksum_ = 1;
    for (int first = range_.first; first < range_.end; first += rows_.rowsPerBlock()) {
        const RowRange part{first, std::min(first + rows_.rowsPerBlock(), range_.end)};
        const auto filtered = rows_.filter(part, filter);
        checksum_ = isal_adler32(checksum_, filtered.data(), filtered.size());
        take(filtered, part.end);
    }
}

}  // namespace platform::png
