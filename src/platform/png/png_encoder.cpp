#include "platform/png/png_encoder.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <deque>
#include <future>
#include <new>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <thread>

#include "platform/png/band_compressor.h"
#include "platform/png/png_chunks.h"

namespace platform::png {

namespace {

using File = std::vector<std::uint8_t>;
/// Nothing in it is ever moved.
using Bands = std::deque<BandCompressor>;

/// A row of four bytes a pixel and its filter byte must not be longer than this.
constexpr std::uint64_t largestRow = 0x7FFFFFFF;
/// With fewer filtered bytes than this a thread of its own costs more than it saves.
constexpr std::size_t smallestBand = std::size_t{256} * 1024;
constexpr int mostThreads = 4;

std::optional<base::Error> problemOf(const base::Image& image) {
    if (image.isEmpty()) {
        return base::Error{base::ErrorKind::invalid, "The picture is empty."};
    }
    const std::uint64_t rowSize = static_cast<std::uint64_t>(image.width()) * 4;
    if (rowSize + 1 > largestRow) {
        return base::Error{base::ErrorKind::invalid, "The picture is too wide for a PNG file."};
    }
    if (image.bytesPerRow() < rowSize) {
        return base::Error{base::ErrorKind::invalid,
                           "The rows of the picture are shorter than its width."};
    }
    return std::nullopt;
}

/// More than deflate ever makes of `filteredSize` bytes, with the chunks around it. Memory that is
/// reserved and never touched costs nothing.
std::size_t largestCompressedSize(std::size_t filteredSize) {
    return filteredSize + filteredSize / 64 + 4096;
}

/// The zlib header: 32 KiB window, fastest algorithm.
void appendStreamHeader(File& file) {
    constexpr std::array<std::uint8_t, 2> header{0x78, 0x01};
    appendChunk(file, ChunkType::imageData, header);
}

void appendStreamChecksum(File& file, std::uint32_t checksum) {
    File data;
    appendBigEndian(data, checksum);
    appendChunk(file, ChunkType::imageData, data);
}

/// Runs `task` on a thread of its own, or here and now where there is none to be had.
template <typename Task>
std::future<void> runBeside(Task task) {
    try {
        return std::async(std::launch::async, task);
    } catch (const std::system_error&) {
        task();
        return {};
    }
}

/// Bands of nearly the same number of rows.
Bands bandsOf(const PixelRows& rows, int count) {
    Bands bands;
    int first = 0;
    for (int band = 1; band <= count; ++band) {
        const auto end = static_cast<int>(static_cast<std::int64_t>(rows.height()) * band / count);
        bands.emplace_back(rows, RowRange{first, end},
                           band == count ? BandPosition::last : BandPosition::followed);
        first = end;
    }
    return bands;
}

/// Compresses the first band into `file` on this thread, the others beside it.
void appendBands(File& file, Bands& bands) {
    std::size_t size = 0;
    std::vector<File> chunks(bands.size());
    for (std::size_t band = 0; band < bands.size(); ++band) {
        size += bands[band].filteredSize();
        if (band > 0) {
            chunks[band].reserve(largestCompressedSize(bands[band].filteredSize()));
        }
    }
    file.reserve(file.size() + largestCompressedSize(size));
    std::vector<std::future<void>> done(bands.size());
    for (std::size_t band = 1; band < bands.size(); ++band) {
        done[band] = runBeside([&bands, &chunks, band] { bands[band].run(chunks[band]); });
    }
    bands.front().run(file);
    for (std::size_t band = 1; band < bands.size(); ++band) {
        if (done[band].valid()) {
            done[band].get();
        }
        file.insert(file.end(), chunks[band].begin(), chunks[band].end());
    }
}

std::uint32_t checksumOf(const Bands& bands) {
    uLong checksum = adler32(0, nullptr, 0);
    for (const BandCompressor& band : bands) {
        checksum =
            adler32_combine(checksum, band.checksum(), static_cast<z_off_t>(band.filteredSize()));
    }
    return static_cast<std::uint32_t>(checksum);
}

File encode(const base::Image& image, base::Size pointSize, int threads) {
    const PixelRows rows(image);
    File file;
    appendSignature(file);
    appendHeader(file, image, rows.layout());
    appendColors(file, image.colorSpace().get());
    appendPhysicalSize(file, image, pointSize);
    const std::size_t filteredSize =
        (rows.bytesPerRow() + 1) * static_cast<std::size_t>(rows.height());
    const auto most = std::min<std::size_t>(static_cast<std::size_t>(rows.height()),
                                            static_cast<std::size_t>(threads));
    const std::size_t count = std::clamp<std::size_t>(filteredSize / smallestBand, 1, most);
    auto bands = bandsOf(rows, static_cast<int>(count));
    appendStreamHeader(file);
    appendBands(file, bands);
    appendStreamChecksum(file, checksumOf(bands));
    appendChunk(file, ChunkType::end, {});
    return file;
}

base::Error outOfMemory() {
    return {base::ErrorKind::failed, "There is not enough memory to write the picture as PNG."};
}

}  // namespace

PngEncoder::PngEncoder()
    : PngEncoder(
          std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, mostThreads)) {}

base::Result<std::vector<std::uint8_t>> PngEncoder::encodePng(const base::Image& image,
                                                              base::Size pointSize) {
    if (const auto problem = problemOf(image)) {
        return *problem;
    }
    try {
        return encode(image, pointSize, threads_);
    } catch (const std::bad_alloc&) {
        return outOfMemory();
    } catch (const std::length_error&) {
        return outOfMemory();
    }
}

}  // namespace platform::png
