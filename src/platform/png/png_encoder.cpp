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
#include "platform/png/band_queue.h"
#include "platform/png/png_chunks.h"

namespace platform::png {

namespace {

using File = std::vector<std::uint8_t>;

/// A row of four bytes a pixel and its filter byte must not be longer than this.
constexpr std::uint64_t largestRow = 0x7FFFFFFF;
/// Each band begins without anything to repeat, which costs a text some 3 KB: with smaller bands
/// than these one of 640x400 took a fifth more.
constexpr std::size_t smallestBand = std::size_t{512} * 1024;
/// So many that one of two threads that begins 5 ms late leaves its share to the other; with twice
/// as many a 4K text takes 16 per cent more than libpng makes of it, with these 12.
constexpr int mostBands = 8;
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

/// A band's rows and, once somebody has compressed it, its checksum.
struct Band {
    RowRange rows;
    std::uint32_t checksum = 1;
    /// Its chunks, unless they are in the file already.
    File chunks{};
};

/// Bands of nearly the same number of rows.
std::vector<Band> bandsOf(int height, int count) {
    std::vector<Band> bands;
    int first = 0;
    for (int band = 1; band <= count; ++band) {
        const auto end = static_cast<int>(static_cast<std::int64_t>(height) * band / count);
        bands.push_back({{first, end}});
        first = end;
    }
    return bands;
}

std::size_t filteredSizeOf(const PixelRows& pixels, RowRange rows) {
    return (pixels.bytesPerRow() + 1) * static_cast<std::size_t>(rows.end - rows.first);
}

/// Compresses the bands into `file`: this thread from the first on, the helping ones from the last.
class BandWork {
  public:
    /// Takes all memory that the helping threads need.
    BandWork(const PixelRows& pixels, std::vector<Band>& bands, std::size_t threads)
        : bands_(bands), queue_(static_cast<int>(bands.size())) {
        const RowRange largest = std::ranges::max(bands, {}, [](const Band& band) {
                                     return band.rows.end - band.rows.first;
                                 }).rows;
        for (std::size_t thread = 0; thread < std::min(threads, bands.size()); ++thread) {
            compressors_.emplace_back(pixels, largest.end - largest.first);
        }
        if (compressors_.size() > 1) {
            for (auto band = bands.begin() + 1; band != bands.end(); ++band) {
                band->chunks.reserve(largestCompressedSize(filteredSizeOf(pixels, band->rows)));
            }
        }
    }

    void run(File& file) {
        std::vector<std::future<void>> helpers;
        for (auto helper = compressors_.begin() + 1; helper != compressors_.end(); ++helper) {
            helpers.push_back(runBeside([this, helper] { help(*helper); }));
        }
        int written = 0;
        while (const auto band = queue_.takeFirst()) {
            compress(compressors_.front(), *band, file);
            written = *band + 1;
        }
        for (auto& helper : helpers) {
            if (helper.valid()) {
                helper.get();
            }
        }
        for (auto band = bands_.begin() + written; band != bands_.end(); ++band) {
            file.insert(file.end(), band->chunks.begin(), band->chunks.end());
        }
    }

  private:
    void help(BandCompressor& compressor) {
        while (const auto band = queue_.takeLast()) {
            compress(compressor, *band, bands_[static_cast<std::size_t>(*band)].chunks);
        }
    }

    void compress(BandCompressor& compressor, int number, File& file) {
        Band& band = bands_[static_cast<std::size_t>(number)];
        const bool isLast = &band == &bands_.back();
        band.checksum =
            compressor.run(band.rows, isLast ? BandPosition::last : BandPosition::followed, file);
    }

    std::vector<Band>& bands_;
    BandQueue queue_;
    /// Nothing in it is ever moved.
    std::deque<BandCompressor> compressors_;
};

std::uint32_t checksumOf(const PixelRows& pixels, const std::vector<Band>& bands) {
    uLong checksum = adler32(0, nullptr, 0);
    for (const Band& band : bands) {
        checksum = adler32_combine(checksum, band.checksum,
                                   static_cast<z_off_t>(filteredSizeOf(pixels, band.rows)));
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
    const std::size_t filteredSize = filteredSizeOf(rows, {0, rows.height()});
    const auto most =
        static_cast<std::size_t>(threads == 1 ? 1 : std::min(mostBands, rows.height()));
    const std::size_t count = std::clamp<std::size_t>(filteredSize / smallestBand, 1, most);
    auto bands = bandsOf(rows.height(), static_cast<int>(count));
    appendStreamHeader(file);
    file.reserve(file.size() + largestCompressedSize(filteredSize));
    BandWork(rows, bands, static_cast<std::size_t>(threads)).run(file);
    appendStreamChecksum(file, checksumOf(rows, bands));
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
