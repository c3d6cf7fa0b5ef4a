#include "platform/png/sparse_compressor.h"

#include <gtest/gtest.h>

#include "deflate_reader.h"
#include "sample_pictures.h"

namespace {

using platform::png::SparseCompressor;
using png_reader::inflated;
using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t rowSize = 1201;

/// Rows of differences, of which those whose numbers are in `changed` are noise.
Bytes rowsWith(std::size_t count, const std::vector<std::size_t>& changed) {
    auto random = sample_pictures::numbersFrom(3);
    Bytes rows(count * rowSize);
    for (std::size_t row = 0; row < count; ++row) {
        rows[row * rowSize] = 2;
    }
    for (const std::size_t row : changed) {
        for (std::size_t at = 1; at < rowSize; ++at) {
            rows[row * rowSize + at] = static_cast<std::uint8_t>(random());
        }
    }
    return rows;
}

/// Given in blocks of `rowsAtOnce` rows.
Bytes compressed(const Bytes& rows, std::size_t rowsAtOnce, SparseCompressor::Ending ending) {
    Bytes stream;
    const auto append = [&stream](std::span<const std::uint8_t> piece) {
        stream.insert(stream.end(), piece.begin(), piece.end());
    };
    SparseCompressor compressor(rowSize);
    for (std::size_t at = 0; at < rows.size(); at += rowsAtOnce * rowSize) {
        const std::size_t size = std::min(rowsAtOnce * rowSize, rows.size() - at);
        compressor.compress(std::span(rows).subspan(at, size), append);
    }
    compressor.end(ending, append);
    return stream;
}

TEST(SparseCompressor, repeated_and_changed_rows_in_any_order_come_back) {
    const std::vector<std::vector<std::size_t>> orders{{},  {0},      {99},        {0, 99},
                                                       {8}, {40, 41}, {7, 16, 49}, {31, 64, 98}};
    for (const auto& changed : orders) {
        const Bytes rows = rowsWith(100, changed);
        for (const std::size_t rowsAtOnce : {1U, 11U, 100U}) {
            const Bytes stream = compressed(rows, rowsAtOnce, SparseCompressor::Ending::finished);
            EXPECT_TRUE(inflated(stream, rows.size()) == rows);
        }
    }
}

TEST(SparseCompressor, streams_that_are_joined_are_one) {
    for (const std::vector<std::size_t>& changed :
         {std::vector<std::size_t>{}, std::vector<std::size_t>{5, 99}}) {
        const Bytes rows = rowsWith(100, changed);
        Bytes stream = compressed(rows, 7, SparseCompressor::Ending::joined);
        const Bytes second = compressed(rows, 7, SparseCompressor::Ending::finished);
        stream.insert(stream.end(), second.begin(), second.end());

        Bytes both = rows;
        both.insert(both.end(), rows.begin(), rows.end());
        EXPECT_TRUE(inflated(stream, both.size()) == both);
    }
}

TEST(SparseCompressor, a_thousand_repeated_rows_take_a_few_bytes_each) {
    const Bytes rows = rowsWith(1000, {});

    EXPECT_LT(compressed(rows, 11, SparseCompressor::Ending::finished).size(), 4500U);
}

}  // namespace
