#include "platform/png/deflater.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>

#include "sample_pictures.h"

namespace {

using platform::png::Deflater;
using Bytes = std::vector<std::uint8_t>;

Bytes noise(std::size_t size) {
    auto random = sample_pictures::numbersFrom(5);
    Bytes bytes(size);
    std::ranges::generate(bytes, [&random] { return static_cast<std::uint8_t>(random()); });
    return bytes;
}

/// What zlib makes of a raw deflate stream; empty unless it is one whole stream and nothing more.
Bytes inflated(const Bytes& stream, std::size_t size) {
    Bytes bytes(size);
    z_stream reader{};
    inflateInit2(&reader, -MAX_WBITS);
    reader.next_in = const_cast<std::uint8_t*>(stream.data());
    reader.avail_in = static_cast<uInt>(stream.size());
    reader.next_out = bytes.data();
    reader.avail_out = static_cast<uInt>(bytes.size());
    const bool isWhole =
        inflate(&reader, Z_FINISH) == Z_STREAM_END && reader.avail_in == 0 && reader.avail_out == 0;
    inflateEnd(&reader);
    return isWhole ? bytes : Bytes{};
}

TEST(Deflater, ends_well_also_where_the_last_piece_is_exactly_full) {
    Deflater deflater;
    bool wasExactlyFull = false;
    // Noise grows by a few bytes, so that one of these sizes fills the piece to the last byte.
    for (std::size_t size = Deflater::pieceSize - 64; size <= Deflater::pieceSize; ++size) {
        const Bytes input = noise(size);
        Bytes stream;
        deflater.restart();
        deflater.compress(input, Deflater::Flush::finish, [&](std::span<const std::uint8_t> piece) {
            EXPECT_FALSE(piece.empty());
            EXPECT_LE(piece.size(), Deflater::pieceSize);
            stream.insert(stream.end(), piece.begin(), piece.end());
        });
        wasExactlyFull |= stream.size() == Deflater::pieceSize;
        ASSERT_TRUE(inflated(stream, size) == input) << size;
    }
    EXPECT_TRUE(wasExactlyFull);
}

TEST(Deflater, two_streams_joined_by_a_full_flush_are_one) {
    Deflater deflater;
    for (std::size_t size = Deflater::pieceSize - 64; size <= Deflater::pieceSize; ++size) {
        const Bytes upper = noise(size);
        const Bytes lower = noise(1000);
        Bytes stream;
        const auto append = [&stream](std::span<const std::uint8_t> piece) {
            stream.insert(stream.end(), piece.begin(), piece.end());
        };
        deflater.restart();
        deflater.compress(upper, Deflater::Flush::full, append);
        deflater.restart();
        deflater.compress(lower, Deflater::Flush::finish, append);

        Bytes both = upper;
        both.insert(both.end(), lower.begin(), lower.end());
        ASSERT_TRUE(inflated(stream, both.size()) == both) << size;
    }
}

}  // namespace
