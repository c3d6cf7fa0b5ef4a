#include "platform/png/deflater.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "deflate_reader.h"
#include "sample_pictures.h"

namespace {

using platform::png::Deflater;
using png_reader::inflated;
using Bytes = std::vector<std::uint8_t>;

Bytes noise(std::size_t size) {
    auto random = sample_pictures::numbersFrom(5);
    Bytes bytes(size);
    std::ranges::generate(bytes, [&random] { return static_cast<std::uint8_t>(random()); });
    return bytes;
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
