#include "png_reader.h"

#include <png.h>

#include <cstring>
#include <stdexcept>

namespace png_reader {

namespace {

struct Source {
    std::span<const std::uint8_t> rest;
};

[[noreturn]] void complain(png_structp, png_const_charp message) {
    throw std::runtime_error(message);
}

void readBytes(png_structp png, png_bytep destination, std::size_t count) {
    auto& source = *static_cast<Source*>(png_get_io_ptr(png));
    if (count > source.rest.size()) {
        throw std::runtime_error("the file ends too early");
    }
    std::memcpy(destination, source.rest.data(), count);
    source.rest = source.rest.subspan(count);
}

struct Reader {
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, complain, complain);
    png_infop info = png_create_info_struct(png);
    ~Reader() { png_destroy_read_struct(&png, &info, nullptr); }
};

void readInfo(const Reader& reader, DecodedPng& decoded) {
    decoded.width = png_get_image_width(reader.png, reader.info);
    decoded.height = png_get_image_height(reader.png, reader.info);
    decoded.bitDepth = png_get_bit_depth(reader.png, reader.info);
    decoded.colorType = png_get_color_type(reader.png, reader.info);
    int unit = PNG_RESOLUTION_UNKNOWN;
    decoded.hasPhysicalSize = png_get_pHYs(reader.png, reader.info, &decoded.pixelsPerMetreX,
                                           &decoded.pixelsPerMetreY, &unit) != 0 &&
                              unit == PNG_RESOLUTION_METER;
    decoded.isStandardRgb = png_get_sRGB(reader.png, reader.info, &decoded.intent) != 0;
    png_charp name = nullptr;
    png_bytep profile = nullptr;
    png_uint_32 profileSize = 0;
    int compression = 0;
    if (png_get_iCCP(reader.png, reader.info, &name, &compression, &profile, &profileSize) != 0) {
        decoded.profileName = name;
        decoded.profile.assign(profile, profile + profileSize);
    }
}

void readPixels(const Reader& reader, const DecodedPng& decoded,
                const std::function<void(std::span<const std::uint8_t>)>& take) {
    std::vector<std::uint8_t> row(png_get_rowbytes(reader.png, reader.info));
    for (std::size_t y = 0; y < decoded.height; ++y) {
        png_read_row(reader.png, row.data(), nullptr);
        take(row);
    }
    png_read_end(reader.png, nullptr);
}

}  // namespace

DecodedPng decode(std::span<const std::uint8_t> file) {
    std::vector<std::uint8_t> pixels;
    DecodedPng decoded = decodeByRows(file, [&pixels](std::span<const std::uint8_t> row) {
        pixels.insert(pixels.end(), row.begin(), row.end());
    });
    decoded.pixels = std::move(pixels);
    return decoded;
}

DecodedPng decodeByRows(std::span<const std::uint8_t> file,
                        const std::function<void(std::span<const std::uint8_t>)>& take) {
    DecodedPng decoded;
    Source source{file};
    const Reader reader;
    try {
        png_set_read_fn(reader.png, &source, readBytes);
        png_set_crc_action(reader.png, PNG_CRC_ERROR_QUIT, PNG_CRC_ERROR_QUIT);
        png_set_user_limits(reader.png, 0x7FFFFFFF, 0x7FFFFFFF);
        png_read_info(reader.png, reader.info);
        readInfo(reader, decoded);
        readPixels(reader, decoded, take);
        if (!source.rest.empty()) {
            decoded.problem = "bytes follow the end of the picture";
        }
    } catch (const std::runtime_error& error) {
        decoded.problem = error.what();
    }
    return decoded;
}

std::vector<std::pair<std::string, std::size_t>> chunksOf(std::span<const std::uint8_t> file) {
    std::vector<std::pair<std::string, std::size_t>> chunks;
    constexpr std::size_t signatureSize = 8;
    constexpr std::size_t frameSize = 12;
    for (std::size_t at = signatureSize; at + frameSize <= file.size();) {
        const std::size_t size = png_get_uint_32(file.data() + at);
        chunks.emplace_back(std::string(file.begin() + static_cast<std::ptrdiff_t>(at) + 4,
                                        file.begin() + static_cast<std::ptrdiff_t>(at) + 8),
                            size);
        at += frameSize + size;
    }
    return chunks;
}

}  // namespace png_reader
