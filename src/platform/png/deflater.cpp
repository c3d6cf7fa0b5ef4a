#include "platform/png/deflater.h"

#include <isa-l/igzip_lib.h>

namespace platform::png {

Deflater::Deflater()
    : stream_(std::make_unique<isal_zstream>()),
      levelBuffer_(ISAL_DEF_LVL1_DEFAULT),
      piece_(pieceSize) {
    restart();
}

Deflater::~Deflater() = default;

void Deflater::restart() {
    isal_deflate_init(stream_.get());
    stream_->level = 1;
    stream_->level_buf = levelBuffer_.data();
    stream_->level_buf_size = static_cast<std::uint32_t>(levelBuffer_.size());
    stream_->gzip_flag = IGZIP_DEFLATE;
    stream_->next_out = piece_.data();
    stream_->avail_out = static_cast<std::uint32_t>(piece_.size());
}

void Deflater::compress(std::span<const std::uint8_t> input, Flush flush, const Sink& sink) {
    // The library only reads through this pointer.
    stream_->next_in = const_cast<std::uint8_t*>(input.data());
    stream_->avail_in = static_cast<std::uint32_t>(input.size());
    stream_->flush = flush == Flush::full ? FULL_FLUSH : NO_FLUSH;
    stream_->end_of_stream = flush == Flush::finish ? 1 : 0;
    isal_deflate(stream_.get());
    while (stream_->avail_out == 0) {
        give(sink);
        isal_deflate(stream_.get());
    }
    if (flush != Flush::none) {
        give(sink);
    }
}

void Deflater::give(const Sink& sink) {
    const std::size_t size = piece_.size() - stream_->avail_out;
    if (size > 0) {
        sink({piece_.data(), size});
    }
    stream_->next_out = piece_.data();
    stream_->avail_out = static_cast<std::uint32_t>(piece_.size());
}

}  // namespace platform::png
