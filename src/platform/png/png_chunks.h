#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "base/geometry.h"
#include "base/image.h"
#include "platform/png/pixel_rows.h"

namespace platform::png {

/// A chunk's name as the big-endian number of its four letters.
enum class ChunkType : std::uint32_t {
    header = 0x49484452,          // IHDR
    colorProfile = 0x69434350,    // iCCP
    standardColors = 0x73524742,  // sRGB
    physicalSize = 0x70485973,    // pHYs
    imageData = 0x49444154,       // IDAT
    end = 0x49454E44,             // IEND
};

/// Each function appends to `file`, whose memory grows as needed.
void appendSignature(std::vector<std::uint8_t>& file);
/// `data` is at most 2^31-1 bytes long.
void appendChunk(std::vector<std::uint8_t>& file, ChunkType type,
                 std::span<const std::uint8_t> data);
/// Begins a chunk whose data are appended one after the other; the result is for `endChunk`.
std::size_t beginChunk(std::vector<std::uint8_t>& file, ChunkType type);
/// Everything since `beginChunk`, at most 2^31-1 bytes, is the chunk's data.
void endChunk(std::vector<std::uint8_t>& file, std::size_t start);
void appendHeader(std::vector<std::uint8_t>& file, const base::Image& image, PixelLayout layout);
/// The picture's profile, or that it is sRGB where it has none.
void appendColors(std::vector<std::uint8_t>& file, const base::ColorSpace* colorSpace);
/// The resolution that shows `image` at `pointSize`; nothing for a size without a meaning.
void appendPhysicalSize(std::vector<std::uint8_t>& file, const base::Image& image,
                        base::Size pointSize);

/// Four bytes, the highest first.
void appendBigEndian(std::vector<std::uint8_t>& bytes, std::uint32_t number);

}  // namespace platform::png
