#include "micro/png_peers.h"

#include <libdeflate.h>
#include <spng.h>

#include <array>
#include <cstdlib>
#include <memory>

#include "micro/libpng_peer.h"

namespace bench {

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
