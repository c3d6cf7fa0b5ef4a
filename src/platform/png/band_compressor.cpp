#include "platform/png/band_compressor.h"

#include <isa-l/igzip_lib.h>

#include <algorithm>

#include "platform/png/png_chunks.h"

namespace platform::png {

namespace {

/// Filtered bytes given to the compressor at a time: they stay in the second-level cache.
constexpr std::size_t blockSize = std::size_t{128} * 1024;

/// The filter is chosen by compressing this many strips of rows both ways: about 3 % of a band of a
/// 4K picture, so that the trial costs about 1 ms.
constexpr int trialStrips = 4;
constexpr int trialRows = 8;

void subtract(std::span<const std::uint8_t> row, std::span<const std::uint8_t> above,
              std::uint8_t* destination) {
    for (std::size_t index = 0; index < row.size(); ++index) {
        destination[index] = static_cast<std::uint8_t>(row[index] - above[index]);
    }
}

}  // namespace

BandCompressor::BandCompressor(const PixelRows& rows, RowRange range, BandPosition position)
    : rows_(rows),
      range_(range),
      position_(position),
      rowsPerBlock_(static_cast<int>(
          std::clamp<std::size_t>(blockSize / (rows.bytesPerRow() + 1), 1,
                                  static_cast<std::size_t>(range.end - range.first)))),
      block_((rows.bytesPerRow() + 1) * static_cast<std::size_t>(rowsPerBlock_)),
      row_(rows.bytesPerRow()),
      rowAbove_(rows.bytesPerRow()) {}

std::size_t BandCompressor::filteredSize() const {
    return (rows_.bytesPerRow() + 1) * static_cast<std::size_t>(range_.end - range_.first);
}

void BandCompressor::run(std::vector<std::uint8_t>& file) {
    const Filter filter = chooseFilter();
    deflater_.restart();
    const auto appendData = [&file](std::span<const std::uint8_t> piece) {
        appendChunk(file, ChunkType::imageData, piece);
    };
    const auto lastFlush =
        position_ == BandPosition::last ? Deflater::Flush::finish : Deflater::Flush::full;
    for (int first = range_.first; first < range_.end; first += rowsPerBlock_) {
        const RowRange part{first, std::min(first + rowsPerBlock_, range_.end)};
        const auto filtered = filterRows(part, filter);
        checksum_ = isal_adler32(checksum_, filtered.data(), filtered.size());
        deflater_.compress(filtered, part.end == range_.end ? lastFlush : Deflater::Flush::none,
                           appendData);
    }
}

BandCompressor::Filter BandCompressor::chooseFilter() {
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
    for (int first = range.first; first < range.end; first += rowsPerBlock_) {
        const RowRange part{first, std::min(first + rowsPerBlock_, range.end)};
        deflater_.compress(filterRows(part, filter),
                           part.end == range.end ? Deflater::Flush::finish : Deflater::Flush::none,
                           count);
    }
    return size;
}

std::span<const std::uint8_t> BandCompressor::filterRows(RowRange range, Filter filter) {
    std::uint8_t* destination = block_.data();
    if (filter == Filter::up && range.first > 0) {
        rows_.read(range.first - 1, rowAbove_.data());
    } else {
        std::ranges::fill(rowAbove_, std::uint8_t{0});
    }
    for (int y = range.first; y < range.end; ++y) {
        *destination++ = static_cast<std::uint8_t>(filter);
        switch (filter) {
            case Filter::none:
                rows_.read(y, destination);
                break;
            case Filter::up:
                rows_.read(y, row_.data());
                subtract(row_, rowAbove_, destination);
                row_.swap(rowAbove_);
                break;
        }
        destination += rows_.bytesPerRow();
    }
    return {block_.data(), static_cast<std::size_t>(destination - block_.data())};
}

}  // namespace platform::png
