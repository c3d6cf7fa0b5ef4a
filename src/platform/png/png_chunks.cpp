#include "platform/png/png_chunks.h"

#include <isa-l/crc.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>

#include "base/text.h"

namespace platform::png {

namespace {

std::array<std::uint8_t, 4> bigEndian(std::uint32_t number) {
    return {static_cast<std::uint8_t>(number >> 24), static_cast<std::uint8_t>(number >> 16),
            static_cast<std::uint8_t>(number >> 8), static_cast<std::uint8_t>(number)};
}

constexpr std::uint32_t largestNumber = 0x7FFFFFFF;

/// Pixels per metre; a point is 1/72 inch, an inch 0.0254 metre.
std::optional<std::uint32_t> pixelsPerMetre(int pixels, double points) {
    const double density = std::round(pixels / points * 72 / 0.0254);
    if (!(points > 0 && density >= 1 && density <= largestNumber)) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(density);
}

bool isPrintable(char letter) {
    const auto code = static_cast<unsigned char>(letter);
    return (code >= 0x20 && code <= 0x7E) || code >= 0xA1;
}

/// A chunk's keyword: 1 to 79 printable Latin-1 letters, no space at an end or beside another.
std::string keyword(const std::string& name) {
    std::string word;
    for (const char letter : base::latin1Text(name)) {
        const char written = isPrintable(letter) ? letter : ' ';
        if (written != ' ' || (!word.empty() && word.back() != ' ')) {
            word.push_back(written);
        }
    }
    word.resize(std::min<std::size_t>(word.size(), 79));
    if (!word.empty() && word.back() == ' ') {
        word.pop_back();
    }
    return word.empty() ? "ICC profile" : word;
}

std::vector<std::uint8_t> profileData(const base::ColorSpace& colorSpace) {
    const std::string name = keyword(colorSpace.name);
    std::vector<std::uint8_t> data(name.begin(), name.end());
    // The end of the keyword, then the compression method: deflate.
    data.insert(data.end(), {0, 0});
    const std::size_t prefix = data.size();
    uLongf size = compressBound(static_cast<uLong>(colorSpace.iccProfile.size()));
    data.resize(prefix + size);
    const int outcome = compress(data.data() + prefix, &size, colorSpace.iccProfile.data(),
                                 static_cast<uLong>(colorSpace.iccProfile.size()));
    if (outcome != Z_OK) {
        throw std::bad_alloc();
    }
    data.resize(prefix + size);
    return data;
}

}  // namespace

void appendBigEndian(std::vector<std::uint8_t>& bytes, std::uint32_t number) {
    const auto parts = bigEndian(number);
    bytes.insert(bytes.end(), parts.begin(), parts.end());
}

void appendSignature(std::vector<std::uint8_t>& file) {
    constexpr std::array<std::uint8_t, 8> signature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    file.insert(file.end(), signature.begin(), signature.end());
}

void appendChunk(std::vector<std::uint8_t>& file, ChunkType type,
                 std::span<const std::uint8_t> data) {
    const std::size_t start = beginChunk(file, type);
    file.insert(file.end(), data.begin(), data.end());
    endChunk(file, start);
}

std::size_t beginChunk(std::vector<std::uint8_t>& file, ChunkType type) {
    const std::size_t start = file.size();
    // The length, known at the end.
    appendBigEndian(file, 0);
    appendBigEndian(file, static_cast<std::uint32_t>(type));
    return start;
}

void endChunk(std::vector<std::uint8_t>& file, std::size_t start) {
    constexpr std::size_t numberSize = 4;
    const std::size_t name = start + numberSize;
    const std::size_t size = file.size() - name - numberSize;
    const auto length = bigEndian(static_cast<std::uint32_t>(size));
    std::ranges::copy(length, file.begin() + static_cast<std::ptrdiff_t>(start));
    appendBigEndian(file, crc32_gzip_refl(0, file.data() + name, file.size() - name));
}

void appendHeader(std::vector<std::uint8_t>& file, const base::Image& image, PixelLayout layout) {
    constexpr std::uint8_t trueColor = 2;
    constexpr std::uint8_t trueColorWithAlpha = 6;
    std::vector<std::uint8_t> data;
    appendBigEndian(data, static_cast<std::uint32_t>(image.width()));
    appendBigEndian(data, static_cast<std::uint32_t>(image.height()));
    // Bits a sample, colour type, then deflate, the adaptive filters and no interlacing.
    data.insert(data.end(),
                {8, layout == PixelLayout::rgb ? trueColor : trueColorWithAlpha, 0, 0, 0});
    appendChunk(file, ChunkType::header, data);
}

void appendColors(std::vector<std::uint8_t>& file, const base::ColorSpace* colorSpace) {
    if (colorSpace != nullptr && !colorSpace->iccProfile.empty()) {
        appendChunk(file, ChunkType::colorProfile, profileData(*colorSpace));
        return;
    }
    constexpr std::array<std::uint8_t, 1> perceptualIntent{0};
    appendChunk(file, ChunkType::standardColors, perceptualIntent);
}

void appendPhysicalSize(std::vector<std::uint8_t>& file, const base::Image& image,
                        base::Size pointSize) {
    const auto across = pixelsPerMetre(image.width(), pointSize.width);
    const auto down = pixelsPerMetre(image.height(), pointSize.height);
    if (!across || !down) {
        return;
    }
    constexpr std::uint8_t metre = 1;
    std::vector<std::uint8_t> data;
    appendBigEndian(data, *across);
    appendBigEndian(data, *down);
    data.push_back(metre);
    appendChunk(file, ChunkType::physicalSize, data);
}

}  // namespace platform::png
