#include <png.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "desktop/picture.h"

namespace desktop {
namespace {

[[noreturn]] void fail(png_structp, png_const_charp message) {
    throw std::runtime_error(std::string("Broken PNG: ") + message);
}

void ignore(png_structp, png_const_charp) {}

std::optional<Png::Profile> profileOf(png_structp structure, png_infop info) {
    png_charp name = nullptr;
    int compression = 0;
    png_bytep bytes = nullptr;
    png_uint_32 size = 0;
    if (png_get_iCCP(structure, info, &name, &compression, &bytes, &size) == 0) {
        return std::nullopt;
    }
    return Png::Profile{name, {bytes, bytes + size}};
}

struct Source {
    const std::vector<std::uint8_t>& bytes;
    std::size_t position = 0;
};

void readBytes(png_structp reader, png_bytep target, std::size_t count) {
    auto& source = *static_cast<Source*>(png_get_io_ptr(reader));
    if (source.bytes.size() - source.position < count) {
        throw std::runtime_error("Broken PNG: it ends too early");
    }
    std::memcpy(target, source.bytes.data() + source.position, count);
    source.position += count;
}

std::vector<std::string> chunkTypes(const std::vector<std::uint8_t>& bytes) {
    constexpr std::size_t signature = 8;
    constexpr std::size_t around = 12;  // Length, type and checksum of a chunk.
    std::vector<std::string> types;
    for (std::size_t position = signature; position + around <= bytes.size();) {
        const std::size_t length = (static_cast<std::size_t>(bytes[position]) << 24U) |
                                   (static_cast<std::size_t>(bytes[position + 1]) << 16U) |
                                   (static_cast<std::size_t>(bytes[position + 2]) << 8U) |
                                   bytes[position + 3];
        types.emplace_back(reinterpret_cast<const char*>(bytes.data()) + position + 4, 4);
        position += length + around;
    }
    return types;
}

/// Frees libpng's structures however the reading ends.
struct Reader {
    png_structp structure = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, ignore);
    png_infop info = png_create_info_struct(structure);
    Reader() = default;
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    ~Reader() { png_destroy_read_struct(&structure, &info, nullptr); }
};

}  // namespace

Png decodePng(const std::vector<std::uint8_t>& bytes) {
    if (bytes.size() < 8 || png_sig_cmp(bytes.data(), 0, 8) != 0) {
        throw std::runtime_error("Not a PNG.");
    }
    Source source{bytes};
    Reader reader;
    png_set_read_fn(reader.structure, &source, readBytes);
    png_read_info(reader.structure, reader.info);
    Png png;
    png.chunks = chunkTypes(bytes);
    png.bitDepth = png_get_bit_depth(reader.structure, reader.info);
    png.hasAlpha = (png_get_color_type(reader.structure, reader.info) & PNG_COLOR_MASK_ALPHA) != 0;
    png_uint_32 perUnitX = 0;
    png_uint_32 perUnitY = 0;
    int unit = 0;
    if (png_get_pHYs(reader.structure, reader.info, &perUnitX, &perUnitY, &unit) != 0 &&
        unit == PNG_RESOLUTION_METER) {
        png.density = Png::Density{perUnitX, perUnitY};
    }
    png.profile = profileOf(reader.structure, reader.info);
    const bool hasProfileChunk =
        std::find(png.chunks.begin(), png.chunks.end(), "iCCP") != png.chunks.end();
    if (hasProfileChunk != png.profile.has_value()) {
        throw std::runtime_error("Broken PNG: its colour profile was refused");
    }
    png_set_expand(reader.structure);
    png_set_strip_16(reader.structure);
    png_set_gray_to_rgb(reader.structure);
    png_set_bgr(reader.structure);
    png_set_add_alpha(reader.structure, 0xff, PNG_FILLER_AFTER);
    png_set_interlace_handling(reader.structure);
    png_read_update_info(reader.structure, reader.info);
    Picture& picture = png.picture;
    picture.width = static_cast<int>(png_get_image_width(reader.structure, reader.info));
    picture.height = static_cast<int>(png_get_image_height(reader.structure, reader.info));
    const auto width = static_cast<std::size_t>(picture.width);
    picture.pixels.resize(width * static_cast<std::size_t>(picture.height));
    std::vector<png_bytep> rows;
    for (std::size_t row = 0; row < static_cast<std::size_t>(picture.height); ++row) {
        rows.push_back(reinterpret_cast<png_bytep>(picture.pixels.data() + row * width));
    }
    png_read_image(reader.structure, rows.data());
    png_read_end(reader.structure, nullptr);
    return png;
}

void writePng(const std::filesystem::path& path, const Picture& picture) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(picture.width);
    image.height = static_cast<png_uint_32>(picture.height);
    image.format = PNG_FORMAT_BGRA;
    std::filesystem::create_directories(path.parent_path());
    if (png_image_write_to_file(&image, path.c_str(), 0, picture.pixels.data(), 0, nullptr) == 0) {
        throw std::runtime_error("The picture " + path.string() + " could not be written.");
    }
}

}  // namespace desktop
