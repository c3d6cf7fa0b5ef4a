#include "micro/libpng_peer.h"

#include <png.h>

namespace bench {

namespace {

void appendBytes(png_structp writer, png_bytep bytes, png_size_t size) {
    auto* file = static_cast<std::vector<std::uint8_t>*>(png_get_io_ptr(writer));
    file->insert(file->end(), bytes, bytes + size);
}

}  // namespace

std::vector<std::uint8_t> packed(const base::Image& image) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(static_cast<std::size_t>(image.width()) *
                  static_cast<std::size_t>(image.height()) * 3);
    for (int y = 0; y < image.height(); ++y) {
        const std::uint8_t* row = image.row(y);
        for (int x = 0; x < image.width(); ++x, row += 4) {
            bytes.insert(bytes.end(), {row[2], row[1], row[0]});
        }
    }
    return bytes;
}

std::vector<std::uint8_t> encodeWithLibpng(const base::Image& image) {
    std::vector<std::uint8_t> file;
    const auto rows = packed(image);
    png_structp writer = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(writer);
    png_set_write_fn(writer, &file, appendBytes, nullptr);
    png_set_IHDR(writer, info, static_cast<png_uint_32>(image.width()),
                 static_cast<png_uint_32>(image.height()), 8, PNG_COLOR_TYPE_RGB,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(writer, info);
    const auto rowSize = static_cast<std::size_t>(image.width()) * 3;
    for (std::size_t at = 0; at < rows.size(); at += rowSize) {
        png_write_row(writer, rows.data() + at);
    }
    png_write_end(writer, info);
    png_destroy_write_struct(&writer, &info);
    return file;
}

}  // namespace bench
