#include "platform/png/band_compressor.h"

#include <isa-l/igzip_lib.h>

#include <algorithm>
#include <cstring>

#include "platform/png/filter_trial.h"
#include "platform/png/png_chunks.h"

namespace platform::png {

namespace {

/// A band that shrinks to less than one in this many bytes may be compressed again, thoroughly: a
/// 4K screen of panels to 1 in 240 at first and 1 in 590 then, for about 10 ms; one of 1280x800 to
/// 1 in 113 and 1 in 180. A page of text is at 1 in 15.
constexpr std::size_t sparseRatio = 64;
/// At most a third of its rows may differ from the row above, or so many bytes: the thorough
/// search takes 4 ms for a megabyte, and all of a 4K screen with one narrow column of text 50 ms.
constexpr std::size_t changedShare = 3;
constexpr std::size_t changedSize = std::size_t{384} * 1024;

}  // namespace

BandCompressor::BandCompressor(const PixelRows& rows, int largestBand)
    : rows_(rows, largestBand), sparse_(rows_.bytesPerRow()) {}

std::uint32_t BandCompressor::run(RowRange band, BandPosition position,
                                  std::vector<std::uint8_t>& file) {
    const std::size_t start = file.size();
    const std::size_t filteredSize =
        rows_.bytesPerRow() * static_cast<std::size_t>(band.end - band.first);
    const std::uint32_t checksum = compressFast(band, position, file);
    if (file.size() - start >= filteredSize / sparseRatio ||
        sizeOfChangedRows(band) > std::max(filteredSize / changedShare, changedSize)) {
        return checksum;
    }
    file.resize(start);
    return compressSparse(band, position, file);
}

std::uint32_t BandCompressor::compressFast(RowRange band, BandPosition position,
                                           std::vector<std::uint8_t>& file) {
    const auto appendData = [&file](std::span<const std::uint8_t> piece) {
        appendChunk(file, ChunkType::imageData, piece);
    };
    const auto lastFlush =
        position == BandPosition::last ? Deflater::Flush::finish : Deflater::Flush::full;
    const Filter filter = FilterTrial(rows_, deflater_).choose(band);
    deflater_.restart();
    return filterAll(band, filter, [&](std::span<const std::uint8_t> filtered, int end) {
        deflater_.compress(filtered, end == band.end ? lastFlush : Deflater::Flush::none,
                           appendData);
    });
}

std::uint32_t BandCompressor::compressSparse(RowRange band, BandPosition position,
                                             std::vector<std::uint8_t>& file) {
    const std::size_t start = beginChunk(file, ChunkType::imageData);
    const auto append = [&file](std::span<const std::uint8_t> piece) {
        file.insert(file.end(), piece.begin(), piece.end());
    };
    sparse_.restart();
    const std::uint32_t checksum =
        filterAll(band, Filter::up, [&](std::span<const std::uint8_t> filtered, int /*end*/) {
            sparse_.compress(filtered, append);
        });
    sparse_.end(position == BandPosition::last ? SparseCompressor::Ending::finished
                                               : SparseCompressor::Ending::joined,
                append);
    endChunk(file, start);
    return checksum;
}

std::size_t BandCompressor::sizeOfChangedRows(RowRange band) {
    const std::size_t rowSize = rows_.bytesPerRow();
    std::size_t size = 0;
    filterAll(band, Filter::up, [&](std::span<const std::uint8_t> filtered, int /*end*/) {
        for (; !filtered.empty(); filtered = filtered.subspan(rowSize)) {
            // All differences of a row that equals the one above are 0; each equals the one before.
            const bool isRepeated = rowSize > 1 && filtered[1] == 0 &&
                                    std::memcmp(&filtered[1], &filtered[2], rowSize - 2) == 0;
            size += isRepeated ? 0 : rowSize;
        }
    });
    return size;
}

template <typename Take>
std::uint32_t BandCompressor::filterAll(RowRange band, Filter filter, Take take) {
    std::uint32_t checksum = 1;
    for (int first = band.first; first < band.end; first += rows_.rowsPerBlock()) {
        const RowRange part{first, std::min(first + rows_.rowsPerBlock(), band.end)};
        const auto filtered = rows_.filter(part, filter);
        checksum = isal_adler32(checksum, filtered.data(), filtered.size());
        take(filtered, part.end);
    }
    return checksum;
}

}  // namespace platform::png
