#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

struct z_stream_s;

namespace platform::png {

/// A raw deflate stream of rows that nearly all equal the row above them, as a screen of panels and
/// empty windows has: zlib's thorough search for the few others, and ready-made streams for the
/// many (zlib alone takes ten times as long, the fast compressor two and a half times the bytes).
///
/// All memory is taken by the constructor. Used by one thread at a time.
class SparseCompressor {
  public:
    using Sink = std::function<void(std::span<const std::uint8_t>)>;
    enum class Ending {
        /// On a byte boundary, so that another stream can follow.
        joined,
        finished,
    };

    /// `bytesPerRow` counts the filter byte.
    explicit SparseCompressor(std::size_t bytesPerRow);
    ~SparseCompressor();
    SparseCompressor(const SparseCompressor&) = delete;
    SparseCompressor& operator=(const SparseCompressor&) = delete;

    /// Begins a new stream.
    void restart();
    /// `rows` are whole rows of differences from the row above.
    void compress(std::span<const std::uint8_t> rows, const Sink& sink);
    void end(Ending ending, const Sink& sink);

  private:
    /// A number of repeated rows as a stream that another can follow.
    struct Repeats {
        std::size_t rows = 0;
        std::vector<std::uint8_t> stream;
    };

    void prepareRepeats();
    void writeRepeats(const Sink& sink);
    void deflateRow(std::span<const std::uint8_t> row, const Sink& sink);
    void deflateSome(std::span<const std::uint8_t> input, int flush, const Sink& sink);
    void leaveRows(const Sink& sink);

    std::size_t bytesPerRow_;
    std::unique_ptr<z_stream_s> zlib_;
    std::vector<std::uint8_t> repeatedRow_;
    std::vector<std::uint8_t> piece_;
    /// The longest first; empty until they are needed.
    std::array<Repeats, 2> repeats_;
    /// Seen, not yet written.
    std::size_t pendingRepeats_ = 0;
    /// Whether zlib holds bytes of rows back.
    bool isInsideRows_ = false;
};

}  // namespace platform::png
