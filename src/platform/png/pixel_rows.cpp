#include "platform/png/pixel_rows.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace platform::png {

namespace {

constexpr std::size_t sourceBytesPerPixel = 4;
constexpr std::uint8_t opaque = 255;

bool isOpaque(const base::Image& image) {
    const auto width = static_cast<std::size_t>(image.width());
    for (int y = 0; y < image.height(); ++y) {
        const std::uint8_t* row = image.row(y);
        // Without an early exit inside a row, so that the compiler can vectorise it.
        std::uint32_t common = 0xFF000000U;
        for (std::size_t x = 0; x < width; ++x) {
            std::uint32_t pixel = 0;
            std::memcpy(&pixel, row + x * sourceBytesPerPixel, sizeof pixel);
            common &= std::endian::native == std::endian::little ? pixel : pixel << 24;
        }
        if (common != 0xFF000000U) {
            return false;
        }
    }
    return true;
}

/// The three colour bytes of a little-endian BGRA pixel with red in the lowest.
std::uint32_t redGreenBlue(const std::uint8_t* source) {
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, source, sizeof pixel);
    return (pixel >> 16 & 0xFFU) | (pixel & 0xFF00U) | (pixel & 0xFFU) << 16;
}

/// Four pixels at a time, as three whole words.
std::size_t packRgbWords(const std::uint8_t* source, std::size_t width, std::uint8_t* destination) {
    std::size_t x = 0;
    for (; x + 4 <= width; x += 4) {
        const std::uint32_t first = redGreenBlue(source);
        const std::uint32_t second = redGreenBlue(source + 4);
        const std::uint32_t third = redGreenBlue(source + 8);
        const std::uint32_t fourth = redGreenBlue(source + 12);
        const std::array<std::uint32_t, 3> words{first | second << 24, second >> 8 | third << 16,
                                                 third >> 16 | fourth << 8};
        std::memcpy(destination, words.data(), sizeof words);
        source += 4 * sourceBytesPerPixel;
        destination += sizeof words;
    }
    return x;
}

#if defined(__x86_64__)
/// Eight pixels at a time: a third of the time that whole words take. The rest is left, also what
/// the last eight bytes of a store would write past the row.
[[gnu::target("avx2")]] std::size_t packRgbVectors(const std::uint8_t* source, std::size_t width,
                                                   std::uint8_t* destination) {
    const __m256i colors = _mm256_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1,
                                            2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1);
    const __m256i halvesJoined = _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 3, 7);
    constexpr std::size_t pixelsOfAStore = 11;
    std::size_t x = 0;
    for (; x + pixelsOfAStore <= width; x += 8) {
        const __m256i pixels =
            _mm256_loadu_si256(reinterpret_cast<const __m256i*>(source + x * sourceBytesPerPixel));
        const __m256i packed =
            _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(pixels, colors), halvesJoined);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(destination + x * 3), packed);
    }
    return x;
}

const bool hasVectors = __builtin_cpu_supports("avx2") != 0;
#endif

void packRgb(const std::uint8_t* source, std::size_t width, std::uint8_t* destination) {
    std::size_t x = 0;
#if defined(__x86_64__)
    if (hasVectors) {
        x = packRgbVectors(source, width, destination);
    }
#endif
    if constexpr (std::endian::native == std::endian::little) {
        x += packRgbWords(source + x * sourceBytesPerPixel, width - x, destination + x * 3);
    }
    for (; x < width; ++x) {
        destination[x * 3] = source[x * sourceBytesPerPixel + 2];
        destination[x * 3 + 1] = source[x * sourceBytesPerPixel + 1];
        destination[x * 3 + 2] = source[x * sourceBytesPerPixel];
    }
}

/// 2^24 / alpha, rounded up: the product with a number below 2^16, shifted down again, is then the
/// exact quotient, since 16 bits and the 8 bits of the divisor fit into 24.
constexpr std::array<std::uint32_t, 256> makeReciprocals() {
    std::array<std::uint32_t, 256> reciprocals{};
    for (std::uint32_t alpha = 1; alpha < 256; ++alpha) {
        reciprocals[alpha] = ((1U << 24) + alpha - 1) / alpha;
    }
    return reciprocals;
}
constexpr auto reciprocals = makeReciprocals();

void packRgba(const std::uint8_t* source, std::size_t width, std::uint8_t* destination) {
    for (std::size_t x = 0; x < width; ++x) {
        const std::uint8_t alpha = source[3];
        if (alpha == opaque) {
            destination[0] = source[2];
            destination[1] = source[1];
            destination[2] = source[0];
        } else {
            destination[0] = unpremultiplied(source[2], alpha);
            destination[1] = unpremultiplied(source[1], alpha);
            destination[2] = unpremultiplied(source[0], alpha);
        }
        destination[3] = alpha;
        source += sourceBytesPerPixel;
        destination += 4;
    }
}

}  // namespace

std::uint8_t unpremultiplied(std::uint8_t color, std::uint8_t alpha) {
    const std::uint64_t dividend = color * 255U + alpha / 2U;
    const std::uint64_t quotient = dividend * reciprocals[alpha] >> 24;
    return static_cast<std::uint8_t>(std::min<std::uint64_t>(quotient, 255));
}

PixelRows::PixelRows(const base::Image& image) : image_(image), layout_(PixelLayout::rgb) {
    if (image.alphaChannel() == base::AlphaChannel::premultiplied && !isOpaque(image)) {
        layout_ = PixelLayout::rgba;
    }
}

void PixelRows::read(int y, std::uint8_t* destination) const {
    const auto width = static_cast<std::size_t>(image_.width());
    switch (layout_) {
        case PixelLayout::rgb:
            packRgb(image_.row(y), width, destination);
            return;
        case PixelLayout::rgba:
            packRgba(image_.row(y), width, destination);
            return;
    }
}

}  // namespace platform::png
