#include "platform/video/film_input.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include "platform/video/codec_error.h"

extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/mem.h>
}

namespace platform::video {

namespace {

constexpr int bufferLength = 32768;
/// A film has a track of pictures and perhaps some of sound and text.
constexpr int maximumTrackCount = 64;

/// A film may name other files, which are none of its business.
int refuseToOpen(AVFormatContext* /*format*/, AVIOContext** /*io*/, const char* /*url*/,
                 int /*flags*/, AVDictionary** /*options*/) {
    return AVERROR(EPERM);
}

}  // namespace

base::Result<std::unique_ptr<FilmInput>> FilmInput::open(int descriptor) {
    struct stat status {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        return base::Error{base::ErrorKind::invalid, "This is not a file."};
    }
    std::unique_ptr<FilmInput> input(new FilmInput(descriptor));
    input->length_ = status.st_size;
    const auto opened = input->openFormat();
    if (!opened) {
        return opened.error();
    }
    return input;
}

base::Status FilmInput::openFormat() {
    auto* const buffer = static_cast<unsigned char*>(::av_malloc(bufferLength));
    io_ = buffer == nullptr ? nullptr
                            : ::avio_alloc_context(buffer, bufferLength, 0, this, &FilmInput::read,
                                                   nullptr, &FilmInput::seek);
    if (io_ == nullptr) {
        ::av_free(buffer);
        return codecError(AVERROR(ENOMEM));
    }
    format_ = ::avformat_alloc_context();
    if (format_ == nullptr) {
        return codecError(AVERROR(ENOMEM));
    }
    format_->pb = io_;
    format_->flags |= AVFMT_FLAG_CUSTOM_IO;
    format_->max_streams = maximumTrackCount;
    format_->io_open = &refuseToOpen;
    // No guessing: this family of containers is all that a film comes in. On failure the context is
    // gone.
    const int result =
        ::avformat_open_input(&format_, nullptr, ::av_find_input_format("mov"), nullptr);
    return result < 0 ? base::Status(codecError(result)) : base::Status(base::Nothing{});
}

FilmInput::~FilmInput() {
    ::avformat_close_input(&format_);
    if (io_ != nullptr) {
        // Not the one it was made with: it may have been exchanged.
        ::av_freep(&io_->buffer);
        ::avio_context_free(&io_);
    }
}

int FilmInput::selectVideoTrack() {
    int selected = -1;
    for (unsigned index = 0; index < format_->nb_streams; ++index) {
        AVStream& stream = *format_->streams[index];
        const bool isCover = (stream.disposition & AV_DISPOSITION_ATTACHED_PIC) != 0;
        if (selected < 0 && stream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO && !isCover) {
            selected = static_cast<int>(index);
        } else {
            stream.discard = AVDISCARD_ALL;
        }
    }
    return selected;
}

int FilmInput::read(void* self, std::uint8_t* buffer, int length) {
    auto& input = *static_cast<FilmInput*>(self);
    ssize_t count = -1;
    do {
        count =
            ::pread(input.descriptor_, buffer, static_cast<std::size_t>(length), input.position_);
    } while (count < 0 && errno == EINTR);
    if (count < 0) {
        return AVERROR(errno);
    }
    input.position_ += count;
    return count == 0 ? AVERROR_EOF : static_cast<int>(count);
}

std::int64_t FilmInput::seek(void* self, std::int64_t offset, int origin) {
    auto& input = *static_cast<FilmInput*>(self);
    std::int64_t position = offset;
    switch (origin & ~AVSEEK_FORCE) {
        case AVSEEK_SIZE:
            return input.length_;
        case SEEK_SET:
            break;
        case SEEK_CUR:
            position += input.position_;
            break;
        case SEEK_END:
            position += input.length_;
            break;
        default:
            return AVERROR(EINVAL);
    }
    if (position < 0) {
        return AVERROR(EINVAL);
    }
    input.position_ = position;
    return position;
}

}  // namespace platform::video
