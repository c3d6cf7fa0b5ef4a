#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace png_reader {

/// What libpng makes of a PNG file when it lets nothing pass: a warning or a wrong checksum is a
/// problem too.
struct DecodedPng {
    /// Empty when libpng has nothing to complain of.
    std::string problem;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    int bitDepth = 0;
    int colorType = 0;
    bool hasPhysicalSize = false;
    std::uint32_t pixelsPerMetreX = 0;
    std::uint32_t pixelsPerMetreY = 0;
    bool isStandardRgb = false;
    int intent = -1;
    std::string profileName;
    std::vector<std::uint8_t> profile;
    /// Three or four bytes a pixel, rows without gaps.
    std::vector<std::uint8_t> pixels;
};

DecodedPng decode(std::span<const std::uint8_t> file);
/// Gives `take` the rows from the top instead of keeping them.
DecodedPng decodeByRows(std::span<const std::uint8_t> file,
                        const std::function<void(std::span<const std::uint8_t>)>& take);

/// The names and sizes of the chunks, in their order.
std::vector<std::pair<std::string, std::size_t>> chunksOf(std::span<const std::uint8_t> file);

}  // namespace png_reader
