#include "platform/png/sparse_compressor.h"

#include <zlib.h>

#include <algorithm>
#include <new>

#include "platform/png/row_filter.h"

namespace platform::png {

namespace {

constexpr std::size_t pieceSize = std::size_t{64} * 1024;
/// Level 6 is what libpng uses, with whose sizes people compare.
constexpr int level = 6;
/// Negative for a stream without zlib's header and checksum.
constexpr int windowBits = -MAX_WBITS;
constexpr int memoryLevel = 9;

}  // namespace

SparseCompressor::SparseCompressor(std::size_t bytesPerRow)
    : bytesPerRow_(bytesPerRow),
      zlib_(std::make_unique<z_stream>()),
      repeatedRow_(bytesPerRow),
      piece_(pieceSize),
      repeats_{Repeats{32, {}}, Repeats{8, {}}} {
    repeatedRow_.front() = static_cast<std::uint8_t>(Filter::up);
    for (Repeats& repeats : repeats_) {
        // A match of 258 bytes takes at most two bytes, a header and the flush below 300.
        repeats.stream.reserve(repeats.rows * (bytesPerRow / 128 + 2) + 512);
    }
    if (deflateInit2(zlib_.get(), level, Z_DEFLATED, windowBits, memoryLevel, Z_DEFAULT_STRATEGY) !=
        Z_OK) {
        throw std::bad_alloc();
    }
}

SparseCompressor::~SparseCompressor() {
    deflateEnd(zlib_.get());
}

void SparseCompressor::restart() {
    deflateReset(zlib_.get());
    pendingRepeats_ = 0;
    isInsideRows_ = false;
}

void SparseCompressor::compress(std::span<const std::uint8_t> rows, const Sink& sink) {
    for (std::size_t at = 0; at < rows.size(); at += bytesPerRow_) {
        const auto row = rows.subspan(at, bytesPerRow_);
        if (std::ranges::equal(row, repeatedRow_)) {
            ++pendingRepeats_;
            continue;
        }
        writeRepeats(sink);
        deflateRow(row, sink);
    }
}

void SparseCompressor::end(Ending ending, const Sink& sink) {
    writeRepeats(sink);
    if (ending == Ending::finished) {
        deflateSome({}, Z_FINISH, sink);
    } else {
        leaveRows(sink);
    }
}

void SparseCompressor::prepareRepeats() {
    for (Repeats& repeats : repeats_) {
        const auto append = [&repeats](std::span<const std::uint8_t> piece) {
            repeats.stream.insert(repeats.stream.end(), piece.begin(), piece.end());
        };
        for (std::size_t row = 0; row < repeats.rows; ++row) {
            deflateRow(repeatedRow_, append);
        }
        leaveRows(append);
    }
}

void SparseCompressor::writeRepeats(const Sink& sink) {
    for (const Repeats& repeats : repeats_) {
        if (pendingRepeats_ < repeats.rows) {
            continue;
        }
        leaveRows(sink);
        if (repeats.stream.empty()) {
            prepareRepeats();
        }
        for (; pendingRepeats_ >= repeats.rows; pendingRepeats_ -= repeats.rows) {
            sink(repeats.stream);
        }
    }
    for (; pendingRepeats_ > 0; --pendingRepeats_) {
        deflateRow(repeatedRow_, sink);
    }
}

void SparseCompressor::deflateRow(std::span<const std::uint8_t> row, const Sink& sink) {
    deflateSome(row, Z_NO_FLUSH, sink);
    isInsideRows_ = true;
}

void SparseCompressor::leaveRows(const Sink& sink) {
    if (isInsideRows_) {
        // Also forgets the rows: the distances of later matches must not reach over what other
        // streams hold in between.
        deflateSome({}, Z_FULL_FLUSH, sink);
        isInsideRows_ = false;
    }
}

void SparseCompressor::deflateSome(std::span<const std::uint8_t> input, int flush,
                                   const Sink& sink) {
    // zlib only reads through this pointer.
    zlib_->next_in = const_cast<std::uint8_t*>(input.data());
    zlib_->avail_in = static_cast<uInt>(input.size());
    do {
        zlib_->next_out = piece_.data();
        zlib_->avail_out = static_cast<uInt>(piece_.size());
        deflate(zlib_.get(), flush);
        const std::size_t size = piece_.size() - zlib_->avail_out;
        if (size > 0) {
            sink({piece_.data(), size});
        }
    } while (zlib_->avail_out == 0);
}

}  // namespace platform::png
