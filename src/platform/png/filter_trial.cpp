#include "platform/png/filter_trial.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace platform::png {

namespace {

/// How much of a band is tried: each strip has one row in so many of it.
struct Sample {
    int strips;
    int share;
};

/// Two longer strips fall between the lines of a text, which then takes 3 % more.
constexpr Sample repetitionSample{.strips = 6, .share = 128};
/// One per cent is much between two filters for pictures, and six shorter strips miss it.
constexpr Sample entropySample{.strips = 4, .share = 64};
constexpr int fewestStripRows = 2;
/// Photographs take half as much again without a filter, which two strips tell.
constexpr int stripsBeforeVerdict = 2;
constexpr std::size_t clearLead = 4;
/// Of surfaces so little is left that another filter could not save what trying it costs.
constexpr std::size_t bareShare = 128;

/// From the middle of each part of the band: the edges of a screen are often bare. Every other one
/// comes first, so that already two of them stand for the whole band.
class Strips {
  public:
    Strips(RowRange band, Sample sample)
        : band_(band),
          count_(band.end - band.first),
          rows_(std::max(count_ / sample.share, fewestStripRows)),
          strips_(count_ > sample.strips * rows_ ? sample.strips : 1) {}

    [[nodiscard]] int size() const { return strips_; }
    [[nodiscard]] RowRange operator[](int turn) const {
        const int part = turn < strips_ / 2 ? 2 * turn + 1 : 2 * (turn - strips_ / 2);
        const auto middle = static_cast<std::int64_t>(count_) * (2L * part + 1) / (2L * strips_);
        const int first = band_.first + std::max(static_cast<int>(middle) - rows_ / 2, 0);
        return {first, std::min(first + rows_, band_.end)};
    }

  private:
    RowRange band_;
    int count_;
    int rows_;
    int strips_;
};

/// How often each byte occurs, two counts of each: a counter that has just been written is slow to
/// read.
class ByteCounts {
  public:
    void add(std::span<const std::uint8_t> bytes) {
        std::size_t at = 0;
        for (; at + 1 < bytes.size(); at += 2) {
            ++even_[bytes[at]];
            ++odd_[bytes[at + 1]];
        }
        if (at < bytes.size()) {
            ++even_[bytes[at]];
        }
    }

    /// Bits that a perfect code for these bytes takes. Zeros are left out: what equals its
    /// neighbours is written as repetitions.
    [[nodiscard]] double entropy() const {
        double total = 0;
        for (std::size_t value = 0; value < even_.size(); ++value) {
            total += even_[value] + odd_[value];
        }
        double bits = 0;
        for (std::size_t value = 1; value < even_.size(); ++value) {
            const double count = even_[value] + odd_[value];
            bits += count > 0 ? count * std::log2(total / count) : 0;
        }
        return bits;
    }

  private:
    std::array<std::uint32_t, 256> even_{};
    std::array<std::uint32_t, 256> odd_{};
};

}  // namespace

Filter FilterTrial::choose(RowRange band) {
    switch (contentOf(band)) {
        case Content::repeated:
            return Filter::none;
        case Content::bare:
            return Filter::up;
        case Content::varied:
            break;
    }
    return entropy(band, Filter::average) < entropy(band, Filter::up) ? Filter::average
                                                                      : Filter::up;
}

FilterTrial::Content FilterTrial::contentOf(RowRange band) {
    const Strips strips(band, repetitionSample);
    std::size_t tried = 0;
    std::size_t plain = 0;
    std::size_t up = 0;
    for (int turn = 0; turn < strips.size(); ++turn) {
        plain += compressedSize(strips[turn], Filter::none);
        up += compressedSize(strips[turn], Filter::up);
        tried +=
            static_cast<std::size_t>(strips[turn].end - strips[turn].first) * rows_.bytesPerRow();
        if (turn + 1 >= stripsBeforeVerdict && up + up / clearLead < plain) {
            break;
        }
    }
    if (up >= plain) {
        return Content::repeated;
    }
    return up < tried / bareShare ? Content::bare : Content::varied;
}

std::size_t FilterTrial::compressedSize(RowRange strip, Filter filter) {
    std::size_t size = 0;
    const auto count = [&size](std::span<const std::uint8_t> piece) { size += piece.size(); };
    deflater_.restart();
    filterAll(strip, filter, [&](std::span<const std::uint8_t> filtered, int end) {
        deflater_.compress(
            filtered, end == strip.end ? Deflater::Flush::finish : Deflater::Flush::none, count);
    });
    return size;
}

double FilterTrial::entropy(RowRange band, Filter filter) {
    const Strips strips(band, entropySample);
    ByteCounts counts;
    for (int turn = 0; turn < strips.size(); ++turn) {
        filterAll(strips[turn], filter,
                  [&counts](std::span<const std::uint8_t> filtered, int /*end*/) {
                      counts.add(filtered);
                  });
    }
    return counts.entropy();
}

template <typename Take>
void FilterTrial::filterAll(RowRange strip, Filter filter, Take take) {
    for (int first = strip.first; first < strip.end; first += rows_.rowsPerBlock()) {
        const RowRange part{first, std::min(first + rows_.rowsPerBlock(), strip.end)};
        take(rows_.filter(part, filter), part.end);
    }
}

}  // namespace platform::png
