#include "micro/png_peers.h"

#include <libdeflate.h>
#include <png.h>
#include <spng.h>

#include <array>
#include <cstdlib>
#include <memory>

namespace bench {

namespace {

/// Red, green, blue, the form that all three take.
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

void appendBytes(png_structp writer, png_bytep bytes, png_size_t size) {
    auto* file = static_cast<std::vector<std::uint8_t>*>(png_get_io_ptr(writer));
    file->insert(file->end(), bytes, bytes + size);
}

}  // namespace

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

std::vector<std::uint8_t> encodeWithLibspng(const base::Image& image) {
    const auto rows = packed(image);
    const std::unique_ptr<spng_ctx, decltype(&spng_ctx_free)> context(
        spng_ctx_new(SPNG_CTX_ENCODER), &spng_ctx_free);
    spng_ihdr header{};
    header.width = static_cast<std::uint32_t>(image.width());
    header.height = static_cast<std::uint32_t>(image.height());
    header.bit_depth = 8;
    header.color_type = SPNG_COLOR_TYPE_TRUECOLOR;
    spng_set_option(context.get(), SPNG_ENCODE_TO_BUFFER, 1);
    spng_set_ihdr(context.get(), &header);
    spng_encode_image(context.get(), rows.data(), rows.size(), SPNG_FMT_PNG, SPNG_ENCODE_FINALIZE);
    std::size_t size = 0;
    int problem = 0;
    const std::unique_ptr<void, decltype(&std::free)> bytes(
        spng_get_png_buffer(context.get(), &size, &problem), &std::free);
    const auto* first = static_cast<const std::uint8_t*>(bytes.get());
    return first == nullptr ? std::vector<std::uint8_t>{}
                            : std::vector<std::uint8_t>{first, first + size};
}

std::vector<std::uint8_t> encodeWithLibdeflate(const base::Image& image) {
    const auto rows = packed(image);
    const auto rowSize = static_cast<std::size_t>(image.width()) * 3;
    std::vector<std::uint8_t> filtered;
    filtered.reserve(rows.size() + static_cast<std::size_t>(image.height()));
    for (std::size_t at = 0; at < rows.size(); at += rowSize) {
        filtered.push_back(2);
        for (std::size_t index = at; index < at + rowSize; ++index) {
            const int above = at == 0 ? 0 : rows[index - rowSize];
            filtered.push_back(static_cast<std::uint8_t>(rows[index] - above));
        }
    }
    const std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)> compressor(
        libdeflate_alloc_compressor(1), &libdeflate_free_compressor);
    std::vector<std::uint8_t> stream(
        libdeflate_zlib_compress_bound(compressor.get(), filtered.size()));
    stream.resize(libdeflate_zlib_compress(compressor.get(), filtered.data(), filtered.size(),
                                           stream.data(), stream.size()));
    return stream;
}

}  // namespace bench
