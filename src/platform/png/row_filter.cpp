#include "platform/png/row_filter.h"

#include <algorithm>

namespace platform::png {

namespace {

constexpr std::size_t blockSize = std::size_t{128} * 1024;

void subtract(std::span<const std::uint8_t> row, std::span<const std::uint8_t> above,
              std::uint8_t* destination) {
    for (std::size_t index = 0; index < row.size(); ++index) {
        destination[index] = static_cast<std::uint8_t>(row[index] - above[index]);
    }
}

/// The mean is rounded down. Processors round it up, sixteen at once: the complement of that of the
/// complements.
void subtractMean(std::span<const std::uint8_t> row, std::span<const std::uint8_t> above,
                  std::size_t bytesPerPixel, std::uint8_t* destination) {
    for (std::size_t index = 0; index < bytesPerPixel; ++index) {
        destination[index] = static_cast<std::uint8_t>(row[index] - above[index] / 2);
    }
    for (std::size_t index = bytesPerPixel; index < row.size(); ++index) {
        const auto left = static_cast<std::uint8_t>(~row[index - bytesPerPixel]);
        const auto up = static_cast<std::uint8_t>(~above[index]);
        const auto complement = static_cast<std::uint8_t>((left + up + 1) >> 1);
        destination[index] = static_cast<std::uint8_t>(row[index] + complement + 1);
    }
}

}  // namespace

RowFilter::RowFilter(const PixelRows& rows, int largestBlock)
    : rows_(rows),
      rowsPerBlock_(static_cast<int>(std::clamp<std::size_t>(
          blockSize / (rows.bytesPerRow() + 1), 1, static_cast<std::size_t>(largestBlock)))),
      block_((rows.bytesPerRow() + 1) * static_cast<std::size_t>(rowsPerBlock_)),
      row_(rows.bytesPerRow()),
      rowAbove_(rows.bytesPerRow()) {}

std::span<const std::uint8_t> RowFilter::filter(RowRange range, Filter filter) {
    std::uint8_t* destination = block_.data();
    if (filter != Filter::none && range.first > 0) {
        rows_.read(range.first - 1, rowAbove_.data());
    } else {
        std::ranges::fill(rowAbove_, std::uint8_t{0});
    }
    for (int y = range.first; y < range.end; ++y) {
        *destination++ = static_cast<std::uint8_t>(filter);
        switch (filter) {
            case Filter::none:
                rows_.read(y, destination);
                break;
            case Filter::up:
                rows_.read(y, row_.data());
                subtract(row_, rowAbove_, destination);
                row_.swap(rowAbove_);
                break;
            case Filter::average:
                rows_.read(y, row_.data());
                subtractMean(row_, rowAbove_, rows_.bytesPerPixel(), destination);
                row_.swap(rowAbove_);
                break;
        }
        destination += rows_.bytesPerRow();
    }
    return {block_.data(), static_cast<std::size_t>(destination - block_.data())};
}

}  // namespace platform::png
