#include "platform/tesseract/quotation_marks.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "platform/tesseract/characters.h"

namespace platform::tesseract {

namespace {

/// In pixels, and as a share of the height: what rounding to pixels explains.
constexpr double leastLean = 0.3;
constexpr double leastLeanShare = 0.09;

/// For marks in shades of ink, where parts of pixels count: in pixels, and as a share of the
/// height.
constexpr double leastShadedLean = 0.18;
constexpr double leastShadedShare = 0.05;
/// The share of an opening mark's ink that is in its upper half, at most.
constexpr double mostInkAbove = 0.46;

bool leans(const GlyphShape& shape) {
    const int height = static_cast<int>(shape.pixels.size()) / shape.width;
    std::array<double, 2> sums{};
    std::array<double, 2> counts{};
    for (int y = 0; y < height; ++y) {
        const std::size_t half = y * 2 < height - 1 ? 0 : 1;
        // The middle row of an odd height belongs to neither half.
        if (y * 2 == height - 1) {
            continue;
        }
        for (int x = 0; x < shape.width; ++x) {
            const auto place = static_cast<std::size_t>(y) * static_cast<std::size_t>(shape.width) +
                               static_cast<std::size_t>(x);
            sums[half] += shape.pixels[place] * (x + 0.5);
            counts[half] += shape.pixels[place];
        }
    }
    if (counts[0] == 0 || counts[1] == 0) {
        return false;
    }
    return std::abs(sums[0] / counts[0] - sums[1] / counts[1]) >
           std::max(leastLean, leastLeanShare * height);
}

}  // namespace

bool isQuotationMark(const std::string& character) {
    static const std::array<std::string, 6> marks{"'", "\"", "‘", "’", "“", "”"};
    return std::find(marks.begin(), marks.end(), character) != marks.end();
}

std::string quotationMarkOf(const std::string& character, const GlyphShape& shape) {
    return !shape.isEmpty() && leans(shape) ? character : withStraightQuotes(character);
}

std::string quotationMarkIn(const InkPlane& ink, const Box& box, const std::string& character) {
    std::array<double, 2> inks{};
    std::array<double, 2> sums{};
    const int bottom = std::min(ink.height(), box.bottom + 1);
    const int right = std::min(ink.width(), box.right + 1);
    for (int y = std::max(0, box.top - 1); y < bottom; ++y) {
        // The middle row of an odd height belongs to neither half.
        if (2 * y + 1 == box.top + box.bottom) {
            continue;
        }
        const std::size_t half = 2 * y + 1 < box.top + box.bottom ? 0 : 1;
        for (int x = std::max(0, box.left - 1); x < right; ++x) {
            inks[half] += ink.at(x, y);
            sums[half] += ink.at(x, y) * (x + 0.5);
        }
    }
    if (inks[0] <= 0 || inks[1] <= 0) {
        return withStraightQuotes(character);
    }
    const double lean = std::abs(sums[0] / inks[0] - sums[1] / inks[1]);
    const bool isOpening = character == "“" || character == "‘";
    const bool liesLow = isOpening && inks[0] < mostInkAbove * (inks[0] + inks[1]);
    const bool isCurly =
        liesLow || lean > std::max(leastShadedLean, leastShadedShare * box.height());
    return isCurly ? character : withStraightQuotes(character);
}

}  // namespace platform::tesseract
