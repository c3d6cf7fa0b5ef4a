#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <vector>

#include "base/image.h"

namespace sample_pictures {

/// A source of 32 random bits at a time, the same ones for the same seed.
inline auto numbersFrom(std::uint32_t seed) {
    return [engine = std::mt19937(seed)]() mutable { return static_cast<std::uint32_t>(engine()); };
}

/// Random colours; with an alpha channel no colour exceeds its alpha.
inline base::Image noise(int width, int height, base::AlphaChannel alphaChannel,
                         std::shared_ptr<const base::ColorSpace> colorSpace = nullptr) {
    auto random = numbersFrom(static_cast<std::uint32_t>(width * 31 + height));
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(width) *
                                     static_cast<std::size_t>(height) * 4);
    for (std::size_t at = 0; at < pixels.size(); at += 4) {
        const std::uint32_t bits = random();
        const std::uint32_t alpha = bits >> 24;
        for (std::size_t channel = 0; channel < 3; ++channel) {
            const std::uint32_t color = bits >> 8 * channel & 0xFFU;
            pixels[at + channel] = static_cast<std::uint8_t>(
                alphaChannel == base::AlphaChannel::none ? color : color * alpha / 255);
        }
        pixels[at + 3] = static_cast<std::uint8_t>(alpha);
    }
    return base::Image::fromPixels(width, height, std::move(pixels), alphaChannel,
                                   std::move(colorSpace));
}

/// A soft gradient, as wallpapers have: rows resemble the rows above them.
inline base::Image gradient(int width, int height) {
    std::vector<std::uint8_t> pixels;
    pixels.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            pixels.push_back(static_cast<std::uint8_t>((x % 4096 * (x % 4096) + y) / 7));
            pixels.push_back(static_cast<std::uint8_t>((x + 2 * y) / 5));
            pixels.push_back(static_cast<std::uint8_t>(x * 3 + y / 9));
            pixels.push_back(0);
        }
    }
    return base::Image::fromPixels(width, height, std::move(pixels), base::AlphaChannel::none);
}

/// A smooth scene with the grain of a camera: each pixel resembles all its neighbours.
inline base::Image photograph(int width, int height, base::AlphaChannel alphaChannel) {
    auto random = numbersFrom(5);
    std::vector<std::uint8_t> pixels;
    pixels.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const std::uint32_t grain = random();
            for (std::uint32_t channel = 0; channel < 3; ++channel) {
                const int wave = (x * 3 + y * 2 + static_cast<int>(channel) * 200) / 16 % 400;
                const int level = 20 + std::abs(wave - 200);
                pixels.push_back(
                    static_cast<std::uint8_t>(level + static_cast<int>(grain >> 8 * channel & 7U)));
            }
            // Opaque but for a corner.
            pixels.push_back(x + y == 0 ? 254 : 255);
        }
    }
    return base::Image::fromPixels(width, height, std::move(pixels), alphaChannel);
}

/// Rows of dark marks on white, as a page of text has: long runs, repeated shapes.
inline base::Image page(int width, int height) {
    std::vector<std::uint8_t> pixels(
        static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4, 255);
    auto random = numbersFrom(7);
    std::vector<std::uint32_t> letters(static_cast<std::size_t>(width / 10 + 1));
    for (int y = 0; y < height; ++y) {
        if (y % 20 == 0) {
            for (auto& letter : letters) {
                letter = random() % 26 * 2654435761U;
            }
        }
        for (int x = 0; x < width; ++x) {
            const bool between = y % 20 > 12 || x % 10 > 7;
            const std::uint32_t shape = letters[static_cast<std::size_t>(x / 10)];
            const auto bit = static_cast<std::uint32_t>((y % 20) * 7 + (x % 10) * 5) % 32U;
            if (!between && (shape >> bit & 1U) != 0) {
                const auto at = (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                                 static_cast<std::size_t>(x)) *
                                4;
                pixels[at] = pixels[at + 1] = pixels[at + 2] = 20;
            }
        }
    }
    return base::Image::fromPixels(width, height, std::move(pixels), base::AlphaChannel::none);
}

/// Panels of one colour each, with corners: most rows equal the row above.
inline base::Image panels(int width, int height) {
    std::vector<std::uint8_t> pixels(
        static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4, 240);
    auto random = numbersFrom(11);
    for (int panel = 0; panel < 24; ++panel) {
        const int left = static_cast<int>(random() % static_cast<std::uint32_t>(width));
        const int top = static_cast<int>(random() % static_cast<std::uint32_t>(height));
        const std::uint32_t color = random();
        for (int y = top; y < std::min(height, top + height / 5); ++y) {
            const int inset = std::max(12 - (y - top), 0);
            for (int x = left + inset; x < std::min(width, left + width / 4) - inset; ++x) {
                const auto at = (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                                 static_cast<std::size_t>(x)) *
                                4;
                for (std::size_t channel = 0; channel < 3; ++channel) {
                    pixels[at + channel] = static_cast<std::uint8_t>(color >> 8 * channel);
                }
            }
        }
    }
    return base::Image::fromPixels(width, height, std::move(pixels), base::AlphaChannel::none);
}

}  // namespace sample_pictures
