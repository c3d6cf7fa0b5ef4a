#include "platform/video/film_reader.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <optional>

#include "platform/video/codec_error.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/avutil.h>
#include <libavutil/frame.h>
#include <libavutil/mathematics.h>
#include <libavutil/version.h>
}

namespace platform::video {

namespace {

using std::chrono::microseconds;

/// What films are made of; the many other decoders of the library are never reached.
constexpr std::array acceptedCodecs{AV_CODEC_ID_H264, AV_CODEC_ID_HEVC, AV_CODEC_ID_MPEG4,
                                    AV_CODEC_ID_VP9, AV_CODEC_ID_AV1};
/// 4096 x 2304: with all the pictures that a decoder keeps this is some 360 MB.
constexpr std::int64_t maximumPixelCount = std::int64_t{4096} * 2304;

/// Pictures one after the other that cannot be decoded.
constexpr int maximumDamageCount = 10000;

std::optional<microseconds> inMicroseconds(std::int64_t value, AVRational unit) {
    if (value == AV_NOPTS_VALUE || unit.num <= 0 || unit.den <= 0) {
        return std::nullopt;
    }
    const std::int64_t converted = ::av_rescale_q(value, unit, AVRational{1, 1'000'000});
    return converted == std::numeric_limits<std::int64_t>::min()
               ? std::nullopt
               : std::optional(microseconds(converted));
}

std::int64_t durationOf(const AVFrame& frame) {
#if LIBAVUTIL_VERSION_INT >= AV_VERSION_INT(57, 30, 100)
    return frame.duration;
#else
    return frame.pkt_duration;
#endif
}

}  // namespace

base::Result<std::unique_ptr<FilmReader>> FilmReader::open(int descriptor) {
    auto input = FilmInput::open(descriptor);
    if (!input) {
        return input.error();
    }
    std::unique_ptr<FilmReader> reader(new FilmReader(std::move(input.value())));
    const auto opened = reader->openTrack();
    if (!opened) {
        return opened.error();
    }
    return reader;
}

base::Status FilmReader::openTrack() {
    track_ = input_->selectVideoTrack();
    if (track_ < 0) {
        return base::Error{base::ErrorKind::notFound, "The file has no video track."};
    }
    const AVStream& stream = *input_->format().streams[track_];
    const AVCodecParameters& parameters = *stream.codecpar;
    const AVCodec* const decoder = ::avcodec_find_decoder(parameters.codec_id);
    if (decoder == nullptr ||
        std::ranges::find(acceptedCodecs, parameters.codec_id) == acceptedCodecs.end()) {
        return base::Error{base::ErrorKind::invalid, "The video is coded in an unknown way."};
    }
    if (std::int64_t{parameters.width} * parameters.height > maximumPixelCount) {
        return base::Error{base::ErrorKind::invalid, "The video's pictures are too large."};
    }
    codec_ = ::avcodec_alloc_context3(decoder);
    packet_ = ::av_packet_alloc();
    frame_ = ::av_frame_alloc();
    if (codec_ == nullptr || packet_ == nullptr || frame_ == nullptr) {
        return codecError(AVERROR(ENOMEM));
    }
    int result = ::avcodec_parameters_to_context(codec_, &parameters);
    if (result >= 0) {
        codec_->thread_count = 1;
        codec_->max_pixels = maximumPixelCount;
        codec_->pkt_timebase = stream.time_base;
        result = ::avcodec_open2(codec_, decoder, nullptr);
    }
    return result < 0 ? base::Status(codecError(result)) : base::Status(base::Nothing{});
}

FilmReader::~FilmReader() {
    ::av_frame_free(&frame_);
    ::av_packet_free(&packet_);
    ::avcodec_free_context(&codec_);
}

base::Result<DecodedFrame> FilmReader::next() {
    for (;;) {
        ::av_frame_unref(frame_);
        const int result = ::avcodec_receive_frame(codec_, frame_);
        if (result >= 0) {
            round_ = Round::hasPictures;
            damageCount_ = 0;
            return DecodedFrame{frame_, timeline_.place(timingOfFrame())};
        }
        if (result == AVERROR(EAGAIN)) {
            feed();
        } else if (result == AVERROR_EOF) {
            if (auto begun = beginRound(); !begun) {
                return begun.error();
            }
        } else if (result == AVERROR(ENOMEM) || ++damageCount_ == maximumDamageCount) {
            return codecError(result);
        } else {
            lastError_ = result;
            feed();
        }
    }
}

/// Gives the decoder the next packet of the track, or lets it know that there is none.
void FilmReader::feed() {
    int result = 0;
    do {
        ::av_packet_unref(packet_);
        result = ::av_read_frame(&input_->format(), packet_);
    } while (result >= 0 && packet_->stream_index != track_);
    if (result < 0 && result != AVERROR_EOF) {
        lastError_ = result;
    }
    const int sent = ::avcodec_send_packet(codec_, result < 0 ? nullptr : packet_);
    if (sent < 0 && sent != AVERROR_EOF) {
        lastError_ = sent;
    }
    ::av_packet_unref(packet_);
}

base::Status FilmReader::beginRound() {
    if (round_ == Round::empty) {
        return codecError(lastError_ == 0 ? AVERROR_INVALIDDATA : lastError_);
    }
    AVStream& stream = *input_->format().streams[track_];
    const AVIndexEntry* const first = ::avformat_index_get_entry(&stream, 0);
    // Exactly the first one: a stamp before it leads to the last one instead.
    const int result = ::av_seek_frame(
        &input_->format(), track_, first == nullptr ? 0 : first->timestamp, AVSEEK_FLAG_BACKWARD);
    if (result < 0) {
        return codecError(result);
    }
    ::avcodec_flush_buffers(codec_);
    timeline_.beginRound();
    round_ = Round::empty;
    return base::Nothing{};
}

FrameTiming FilmReader::timingOfFrame() const {
    const AVStream& stream = *input_->format().streams[track_];
    FrameTiming timing{.stamp = inMicroseconds(frame_->best_effort_timestamp, stream.time_base),
                       .duration = inMicroseconds(durationOf(*frame_), stream.time_base)};
    if (!timing.duration || timing.duration->count() <= 0) {
        const AVRational rate = stream.avg_frame_rate;
        timing.duration = inMicroseconds(1, AVRational{rate.den, rate.num});
    }
    return timing;
}

}  // namespace platform::video
