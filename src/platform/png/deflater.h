#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

struct isal_zstream;

namespace platform::png {

/// A raw deflate stream at the fastest level that still looks for repetitions.
///
/// All memory is taken by the constructor, so that a short-lived thread that only compresses leaves
/// no memory arena of its own behind. May be moved between threads, used by one at a time.
class Deflater {
  public:
    using Sink = std::function<void(std::span<const std::uint8_t>)>;
    enum class Flush {
        none,
        /// Ends on a byte boundary, so that another stream can follow.
        full,
        /// Ends the stream.
        finish,
    };

    Deflater();
    ~Deflater();
    /// Forgets everything and begins a new stream.
    void restart();
    /// Gives `sink` the compressed bytes, in pieces of at most `pieceSize`; with `Flush::none` some
    /// are kept back until the next call.
    void compress(std::span<const std::uint8_t> input, Flush flush, const Sink& sink);

    static constexpr std::size_t pieceSize = std::size_t{64} * 1024;

  private:
    void give(const Sink& sink);

    std::unique_ptr<isal_zstream> stream_;
    std::vector<std::uint8_t> levelBuffer_;
    std::vector<std::uint8_t> piece_;
};

}  // namespace platform::png
