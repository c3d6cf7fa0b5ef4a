#include "deflate_reader.h"

#include <zlib.h>

namespace png_reader {

std::vector<std::uint8_t> inflated(const std::vector<std::uint8_t>& stream, std::size_t size) {
    std::vector<std::uint8_t> bytes(size);
    z_stream reader{};
    inflateInit2(&reader, -MAX_WBITS);
    reader.next_in = const_cast<std::uint8_t*>(stream.data());
    reader.avail_in = static_cast<uInt>(stream.size());
    reader.next_out = bytes.data();
    reader.avail_out = static_cast<uInt>(bytes.size());
    const bool isWhole =
        inflate(&reader, Z_FINISH) == Z_STREAM_END && reader.avail_in == 0 && reader.avail_out == 0;
    inflateEnd(&reader);
    return isWhole ? bytes : std::vector<std::uint8_t>{};
}

}  // namespace png_reader
