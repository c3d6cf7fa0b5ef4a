#include "video/film_maker.h"

#include <memory>
#include <optional>
#include <stdexcept>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
#include <libavutil/log.h>
#include <libavutil/opt.h>
}

namespace video_tests {

namespace {

/// A number is eight fields in two rows, white for one and black for none, the lowest digit first.
constexpr int fieldColumns = 4;
constexpr int fieldRows = 2;
constexpr std::uint8_t black = 16;
constexpr std::uint8_t white = 235;

void check(int result, const char* what) {
    if (result < 0) {
        throw std::runtime_error(std::string("making a film: ") + what);
    }
}

std::uint8_t numberField(int number, int x, int y, int width, int height) {
    const int field = x * fieldColumns / width + y * fieldRows / height * fieldColumns;
    return (number >> field & 1) != 0 ? white : black;
}

/// A container under construction.
class FilmFile {
  public:
    FilmFile(const std::filesystem::path& path, const std::string& flags) : flags_(flags) {
        ::av_log_set_level(AV_LOG_ERROR);
        check(::avformat_alloc_output_context2(&format_, nullptr, "mp4", path.c_str()), "format");
        // The same plan gives the same bytes.
        format_->flags |= AVFMT_FLAG_BITEXACT;
        check(::avio_open(&format_->pb, path.c_str(), AVIO_FLAG_WRITE), "file");
    }
    ~FilmFile() {
        ::avio_closep(&format_->pb);
        ::avformat_free_context(format_);
    }
    FilmFile(const FilmFile&) = delete;
    FilmFile& operator=(const FilmFile&) = delete;

    AVStream* addTrack(const AVCodecContext& codec) {
        AVStream* const stream = ::avformat_new_stream(format_, nullptr);
        check(::avcodec_parameters_from_context(stream->codecpar, &codec), "parameters");
        stream->time_base = codec.time_base;
        stream->avg_frame_rate = codec.framerate;
        stream->sample_aspect_ratio = codec.sample_aspect_ratio;
        return stream;
    }
    void begin() {
        AVDictionary* options = nullptr;
        if (!flags_.empty()) {
            ::av_dict_set(&options, "movflags", flags_.c_str(), 0);
        }
        check(::avformat_write_header(format_, &options), "header");
        ::av_dict_free(&options);
    }
    void write(AVPacket& packet, const AVCodecContext& codec, const AVStream& stream) {
        packet.stream_index = stream.index;
        ::av_packet_rescale_ts(&packet, codec.time_base, stream.time_base);
        check(::av_interleaved_write_frame(format_, &packet), "packet");
    }
    void end() { check(::av_write_trailer(format_), "trailer"); }

  private:
    std::string flags_;
    AVFormatContext* format_ = nullptr;
};

/// One encoder and its track.
class Track {
  public:
    explicit Track(const std::string& encoder)
        : codec_(::avcodec_alloc_context3(::avcodec_find_encoder_by_name(encoder.c_str()))),
          frame_(::av_frame_alloc()),
          packet_(::av_packet_alloc()) {
        codec_->thread_count = 1;
        codec_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER | AV_CODEC_FLAG_BITEXACT;
    }
    ~Track() {
        ::av_packet_free(&packet_);
        ::av_frame_free(&frame_);
        ::avcodec_free_context(&codec_);
    }
    Track(const Track&) = delete;
    Track& operator=(const Track&) = delete;

    AVCodecContext& codec() { return *codec_; }
    AVFrame& frame() { return *frame_; }
    void open(FilmFile& file) {
        check(::avcodec_open2(codec_, nullptr, nullptr), "encoder");
        stream_ = file.addTrack(*codec_);
    }
    /// Encodes the frame, or what is left.
    void encode(FilmFile& file, const AVFrame* frame, std::int64_t duration) {
        check(::avcodec_send_frame(codec_, frame), "frame");
        while (::avcodec_receive_packet(codec_, packet_) >= 0) {
            packet_->duration = packet_->duration > 0 ? packet_->duration : duration;
            file.write(*packet_, *codec_, *stream_);
        }
    }

  private:
    AVCodecContext* codec_;
    AVFrame* frame_;
    AVPacket* packet_;
    AVStream* stream_ = nullptr;
};

void setUpPictures(Track& track, const FilmPlan& plan) {
    AVCodecContext& codec = track.codec();
    codec.width = plan.width;
    codec.height = plan.height;
    codec.pix_fmt = AV_PIX_FMT_YUV420P;
    codec.time_base = {1, plan.timescale};
    codec.framerate = {plan.rate, 1};
    codec.gop_size = plan.keyDistance;
    codec.max_b_frames = plan.encoder == "libx264" ? plan.reorderedCount : 0;
    codec.sample_aspect_ratio = {plan.pixelWidth, plan.pixelHeight};
    codec.bit_rate = std::int64_t{4} * plan.width * plan.height * plan.rate / 10;
    ::av_opt_set(codec.priv_data, "preset", "ultrafast", 0);
    // Ultrafast knows no reordering of its own accord.
    ::av_opt_set(codec.priv_data, "b-pyramid", "none", 0);
    AVFrame& frame = track.frame();
    frame.format = codec.pix_fmt;
    frame.width = codec.width;
    frame.height = codec.height;
    check(::av_frame_get_buffer(&frame, 0), "memory");
}

void paint(AVFrame& frame, int number, const FilmPlan& plan) {
    check(::av_frame_make_writable(&frame), "memory");
    for (int y = 0; y < plan.height; ++y) {
        for (int x = 0; x < plan.width; ++x) {
            frame.data[0][y * frame.linesize[0] + x] =
                plan.paint ? plan.paint(number, x, y)
                           : numberField(number, x, y, plan.width, plan.height);
        }
    }
    for (const int plane : {1, 2}) {
        std::fill_n(frame.data[plane], frame.linesize[plane] * ((plan.height + 1) / 2), 128);
    }
}

void setUpSound(Track& track) {
    AVCodecContext& codec = track.codec();
    codec.sample_fmt = AV_SAMPLE_FMT_FLTP;
    codec.sample_rate = 44100;
    codec.bit_rate = 64000;
    codec.time_base = {1, codec.sample_rate};
    ::av_channel_layout_default(&codec.ch_layout, 1);
}

/// `length` in seconds of a saw tooth.
void encodeSound(Track& track, FilmFile& file, double length) {
    AVFrame& frame = track.frame();
    frame.format = track.codec().sample_fmt;
    frame.nb_samples = track.codec().frame_size;
    frame.sample_rate = track.codec().sample_rate;
    check(::av_channel_layout_copy(&frame.ch_layout, &track.codec().ch_layout), "layout");
    check(::av_frame_get_buffer(&frame, 0), "memory");
    for (frame.pts = 0; static_cast<double>(frame.pts) < length * frame.sample_rate;
         frame.pts += frame.nb_samples) {
        check(::av_frame_make_writable(&frame), "memory");
        auto* const samples = reinterpret_cast<float*>(frame.data[0]);
        for (int sample = 0; sample < frame.nb_samples; ++sample) {
            samples[sample] = static_cast<float>(sample % 100) / 100;
        }
        track.encode(file, &frame, frame.nb_samples);
    }
    track.encode(file, nullptr, frame.nb_samples);
}

std::vector<std::int64_t> stampsOf(const FilmPlan& plan) {
    std::vector<std::int64_t> stamps = plan.stamps;
    for (int picture = 0; stamps.empty() || (plan.stamps.empty() && picture <= plan.pictureCount);
         ++picture) {
        stamps.push_back(std::int64_t{picture} * plan.timescale / plan.rate);
    }
    return stamps;
}

/// All pictures of a track, numbered from `first` on.
void encodePictures(Track& track, FilmFile& file, const FilmPlan& plan, int first) {
    const auto stamps = stampsOf(plan);
    std::int64_t duration = 0;
    for (std::size_t picture = 0; picture + 1 < stamps.size(); ++picture) {
        paint(track.frame(), first + static_cast<int>(picture), plan);
        track.frame().pts = stamps[picture];
        duration = stamps[picture + 1] - stamps[picture];
        track.encode(file, &track.frame(), duration);
    }
    track.encode(file, nullptr, duration);
}

}  // namespace

void makeFilm(const std::filesystem::path& path, const FilmPlan& plan) {
    FilmFile file(path, plan.flags);
    Track pictures(plan.encoder);
    setUpPictures(pictures, plan);
    pictures.open(file);
    std::optional<Track> more;
    if (plan.secondTrack) {
        more.emplace(plan.encoder);
        setUpPictures(*more, plan);
        more->open(file);
    }
    std::optional<Track> sound;
    if (plan.sound == Sound::track) {
        sound.emplace("aac");
        setUpSound(*sound);
        sound->open(file);
    }
    file.begin();
    encodePictures(pictures, file, plan, 0);
    if (more) {
        encodePictures(*more, file, plan, *plan.secondTrack);
    }
    if (sound) {
        // Longer than the pictures: the loop is theirs.
        encodeSound(*sound, file,
                    1.5 * static_cast<double>(stampsOf(plan).back()) / plan.timescale);
    }
    file.end();
}

void makeSoundOnly(const std::filesystem::path& path) {
    FilmFile file(path, "");
    Track sound("aac");
    setUpSound(sound);
    sound.open(file);
    file.begin();
    encodeSound(sound, file, 0.5);
    file.end();
}

int numberIn(const base::Image& image) {
    int number = 0;
    for (int field = 0; field < fieldColumns * fieldRows; ++field) {
        const int x = (2 * (field % fieldColumns) + 1) * image.width() / (2 * fieldColumns);
        const int y = (2 * (field / fieldColumns) + 1) * image.height() / (2 * fieldRows);
        const std::uint8_t green = image.row(y)[4 * x + 1];
        if (green > 70 && green < 185) {
            return -1;
        }
        number |= green >= 128 ? 1 << field : 0;
    }
    return number;
}

}  // namespace video_tests
