// The film that Lumaframe brings along, as it is committed.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <vector>

#include "platform/video/film_reader.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

namespace {

using platform::video::FilmReader;

constexpr const char* filmPath = LUMAFRAME_TUTORIAL_FILM;

/// The file's own description of itself.
class TutorialFilm : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(::avformat_open_input(&format_, filmPath, nullptr, nullptr), 0);
        ASSERT_GE(::avformat_find_stream_info(format_, nullptr), 0);
    }
    ~TutorialFilm() override { ::avformat_close_input(&format_); }
    [[nodiscard]] const AVStream& track() const { return *format_->streams[0]; }

    AVFormatContext* format_ = nullptr;
};

TEST_F(TutorialFilm, is_one_track_of_h264_without_sound) {
    ASSERT_EQ(format_->nb_streams, 1U);
    EXPECT_EQ(track().codecpar->codec_type, AVMEDIA_TYPE_VIDEO);
    EXPECT_EQ(track().codecpar->codec_id, AV_CODEC_ID_H264);
}

TEST_F(TutorialFilm, is_1280_by_720_at_30_pictures_a_second_in_colours_that_it_names) {
    const AVCodecParameters& picture = *track().codecpar;
    EXPECT_EQ(picture.width, 1280);
    EXPECT_EQ(picture.height, 720);
    EXPECT_EQ(picture.format, AV_PIX_FMT_YUV420P);
    EXPECT_EQ(picture.color_space, AVCOL_SPC_BT709);
    EXPECT_EQ(picture.color_primaries, AVCOL_PRI_BT709);
    EXPECT_EQ(picture.color_trc, AVCOL_TRC_BT709);
    EXPECT_EQ(picture.color_range, AVCOL_RANGE_MPEG);
    EXPECT_EQ(::av_cmp_q(track().avg_frame_rate, {30, 1}), 0);
}

TEST_F(TutorialFilm, lasts_8_to_12_seconds_and_has_less_than_1_500_000_bytes) {
    const double seconds = static_cast<double>(format_->duration) / AV_TIME_BASE;
    EXPECT_GE(seconds, 8);
    EXPECT_LE(seconds, 12);
    EXPECT_EQ(track().nb_frames, std::llround(seconds * 30));
    EXPECT_LT(std::filesystem::file_size(filmPath), 1'500'000U);
}

/// The luminances of a picture.
std::vector<std::uint8_t> luminances(const AVFrame& frame) {
    std::vector<std::uint8_t> all;
    for (int y = 0; y < frame.height; ++y) {
        const std::uint8_t* row = frame.data[0] + std::ptrdiff_t{y} * frame.linesize[0];
        all.insert(all.end(), row, row + frame.width);
    }
    return all;
}

/// The share of places whose luminance differs by more than a coding of still pictures does.
double differentShare(const std::vector<std::uint8_t>& one, const std::vector<std::uint8_t>& two) {
    std::size_t count = 0;
    for (std::size_t place = 0; place < one.size(); ++place) {
        count += std::abs(one[place] - two[place]) > 12 ? 1 : 0;
    }
    return static_cast<double>(count) / static_cast<double>(one.size());
}

TEST_F(TutorialFilm, ends_as_it_begins_and_is_another_picture_in_between) {
    const int descriptor = ::open(filmPath, O_RDONLY | O_CLOEXEC);
    ASSERT_GE(descriptor, 0);
    const auto reader = FilmReader::open(descriptor);
    ASSERT_TRUE(reader);
    std::vector<std::uint8_t> first;
    std::vector<std::uint8_t> last;
    double greatest = 0;
    for (std::int64_t picture = 0; picture < track().nb_frames; ++picture) {
        const auto decoded = reader.value()->next();
        ASSERT_TRUE(decoded) << "picture " << picture;
        EXPECT_NEAR(static_cast<double>(decoded.value().time.count()),
                    static_cast<double>(picture) * 1e6 / 30, 1000);
        last = luminances(*decoded.value().frame);
        first = picture == 0 ? last : first;
        greatest = std::max(greatest, differentShare(first, last));
    }
    EXPECT_LT(differentShare(first, last), 0.0005);
    EXPECT_GT(greatest, 0.5);
    ::close(descriptor);
}

}  // namespace
