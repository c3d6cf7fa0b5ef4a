#include "platform/png/png_encoder.h"

#include <zlib.h>

#include <array>
#include <future>
#include <new>
#include <optional>
#include <stdexcept>
#include <system_error>

#include "platform/png/band_compressor.h"
#include "platform/png/png_chunks.h"

namespace platform::png {

namespace {

using File = std::vector<std::uint8_t>;

/// A row of four bytes a pixel and its filter byte must not be longer than this.
constexpr std::uint64_t largestRow = 0x7FFFFFFF;
/// Below this many filtered bytes a second thread costs more than it saves.
constexpr std::size_t smallestSharedWork = std::size_t{512} * 1024;

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

void appendInOneBand(File& file, const PixelRows& rows) {
    BandCompressor band(rows, {0, rows.height()}, BandPosition::last);
    file.reserve(file.size() + largestCompressedSize(band.filteredSize()));
    appendStreamHeader(file);
    band.run(file);
    appendStreamChecksum(file, band.checksum());
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

void appendInTwoBands(File& file, const PixelRows& rows) {
    const int middle = rows.height() / 2;
    BandCompressor upper(rows, {0, middle}, BandPosition::followed);
    BandCompressor lower(rows, {middle, rows.height()}, BandPosition::last);
    File lowerChunks;
    lowerChunks.reserve(largestCompressedSize(lower.filteredSize()));
    file.reserve(file.size() + largestCompressedSize(upper.filteredSize() + lower.filteredSize()));

    const auto compressLower = [&lower, &lowerChunks] { lower.run(lowerChunks); };
    std::future<void> lowerDone = runBeside(compressLower);
    appendStreamHeader(file);
    upper.run(file);
    if (lowerDone.valid()) {
        lowerDone.get();
    }
    file.insert(file.end(), lowerChunks.begin(), lowerChunks.end());
    appendStreamChecksum(
        file, static_cast<std::uint32_t>(adler32_combine(
                  upper.checksum(), lower.checksum(), static_cast<z_off_t>(lower.filteredSize()))));
}

File encode(const base::Image& image, base::Size pointSize) {
    const PixelRows rows(image);
    File file;
    appendSignature(file);
    appendHeader(file, image, rows.layout());
    appendColors(file, image.colorSpace().get());
    appendPhysicalSize(file, image, pointSize);
    const std::size_t filteredSize =
        (rows.bytesPerRow() + 1) * static_cast<std::size_t>(rows.height());
    if (filteredSize < smallestSharedWork || rows.height() < 2) {
        appendInOneBand(file, rows);
    } else {
        appendInTwoBands(file, rows);
    }
    appendChunk(file, ChunkType::end, {});
    return file;
}

base::Error outOfMemory() {
    return {base::ErrorKind::failed, "There is not enough memory to write the picture as PNG."};
}

}  // namespace

base::Result<std::vector<std::uint8_t>> PngEncoder::encodePng(const base::Image& image,
                                                              base::Size pointSize) {
    if (const auto problem = problemOf(image)) {
        return *problem;
    }
    try {
        return encode(image, pointSize);
    } catch (const std::bad_alloc&) {
        return outOfMemory();
    } catch (const std::length_error&) {
        return outOfMemory();
    }
}

}  // namespace platform::png
