// Whole films through the real helper: every picture, in order, at its time, round after round.
#include <gmock/gmock.h>

#include "video/video_fixture.h"

namespace video_tests {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

class FilmLoop : public VideoFixture {};

/// `count` numbers from 0 on, `rounds` times.
std::vector<int> numbers(int count, int rounds) {
    std::vector<int> all;
    for (int index = 0; index < count * rounds; ++index) {
        all.push_back(index % count);
    }
    return all;
}

/// What kinds of files a film can be.
struct Kind {
    const char* name;
    FilmPlan plan;
};

class EveryFilm : public FilmLoop, public testing::WithParamInterface<Kind> {};

TEST_P(EveryFilm, plays_every_picture_in_order_and_the_first_follows_the_last_at_its_time) {
    const FilmPlan& plan = GetParam().plan;
    makeFilm(film(), plan);
    open();
    std::vector<int> shown;
    for (int picture = 0; picture < 3 * plan.pictureCount; ++picture) {
        const Answer answer = next();
        ASSERT_TRUE(answer) << answer.error().sentence;
        shown.push_back(numberIn(answer.value().image));
        EXPECT_EQ(answer.value().time.count(), std::int64_t{picture} * 1'000'000 / plan.rate)
            << "picture " << picture;
    }
    EXPECT_THAT(shown, ElementsAreArray(numbers(plan.pictureCount, 3)));
}

INSTANTIATE_TEST_SUITE_P(
    FilmLoop, EveryFilm,
    testing::Values(Kind{"with_reordered_pictures", {}}, Kind{"in_order", {.reorderedCount = 0}},
                    Kind{"with_many_key_pictures", {.keyDistance = 3}},
                    Kind{"of_the_older_codec", {.encoder = "mpeg4"}},
                    Kind{"with_sound", {.sound = Sound::track}},
                    Kind{"with_the_tables_in_front", {.flags = "faststart"}},
                    Kind{"in_fragments", {.keyDistance = 4, .flags = "frag_keyframe+empty_moov"}},
                    Kind{"of_one_picture", {.pictureCount = 1}},
                    Kind{"of_fifty_pictures_a_second", {.pictureCount = 20, .rate = 50}}),
    [](const testing::TestParamInfo<Kind>& film) { return film.param.name; });

TEST_F(FilmLoop, pictures_of_various_durations_keep_them_and_so_does_the_last_one) {
    makeFilm(film(), {.stamps = {0, 40, 540, 560, 1560}, .timescale = 1000, .reorderedCount = 0});
    open();
    EXPECT_THAT(nextTimes(9), ElementsAre(0, 40'000, 540'000, 560'000,                 //
                                          1'560'000, 1'600'000, 2'100'000, 2'120'000,  //
                                          3'120'000));
}

TEST_F(FilmLoop, the_view_may_change_its_size_from_one_picture_to_the_next) {
    makeFilm(film(), {});
    open();
    int number = 0;
    for (const base::PixelSize size :
         {base::PixelSize{128, 96}, {256, 192}, {31, 23}, {1280, 960}, {128, 96}}) {
        const Answer answer = next(size);
        ASSERT_TRUE(answer) << answer.error().sentence;
        EXPECT_EQ(answer.value().image.width(), size.width);
        EXPECT_EQ(answer.value().image.height(), size.height);
        EXPECT_EQ(numberIn(answer.value().image), number++);
    }
}

TEST_F(FilmLoop, of_two_tracks_of_pictures_the_first_is_played) {
    makeFilm(film(), {.pictureCount = 4, .secondTrack = 100});
    open();
    EXPECT_THAT(nextNumbers(6), ElementsAre(0, 1, 2, 3, 0, 1));
}

TEST_F(FilmLoop, a_picture_stays_as_it_is_while_the_next_one_is_made) {
    makeFilm(film(), {});
    open();
    const Answer first = next();
    const Answer second = next();
    ASSERT_TRUE(first && second);
    EXPECT_EQ(numberIn(first.value().image), 0);
    EXPECT_EQ(numberIn(second.value().image), 1);
}

TEST_F(FilmLoop, a_picture_outlives_its_film) {
    makeFilm(film(), {});
    open();
    const Answer first = next();
    looper_.reset();
    ASSERT_TRUE(first);
    EXPECT_EQ(numberIn(first.value().image), 0);
}

/// Red, as it comes out of a film in greys: how bright the picture is at a place.
int brightness(const base::Image& image, int x, int y) {
    return image.row(y)[4 * x + 2];
}

TEST_F(FilmLoop, what_does_not_fit_is_cut_off_on_both_sides_alike) {
    // Black, grey and white stripes from left to right, 40, 120 and 40 wide.
    makeFilm(film(), {.width = 200, .height = 100, .paint = [](int, int x, int) -> std::uint8_t {
                          return x < 40 ? 16 : x < 160 ? 126 : 235;
                      }});
    open();
    const Answer whole = next({200, 100});
    ASSERT_TRUE(whole);
    EXPECT_LT(brightness(whole.value().image, 20, 50), 20);
    EXPECT_GT(brightness(whole.value().image, 180, 50), 235);
    const Answer middle = next({240, 200});
    ASSERT_TRUE(middle);
    for (const int x : {4, 120, 235}) {
        EXPECT_NEAR(brightness(middle.value().image, x, 100), 128, 8) << "at " << x;
    }
}

TEST_F(FilmLoop, pixels_that_are_not_square_keep_their_proportions) {
    // Shown 200 wide, of which a square view takes the middle half.
    makeFilm(film(), {.width = 100,
                      .height = 100,
                      .pixelWidth = 2,
                      .paint = [](int, int x, int) -> std::uint8_t {
                          return x < 25 ? 16 : x < 75 ? 126 : 235;
                      }});
    open();
    const Answer square = next({100, 100});
    ASSERT_TRUE(square);
    for (const int x : {3, 50, 96}) {
        EXPECT_NEAR(brightness(square.value().image, x, 50), 128, 8) << "at " << x;
    }
}

}  // namespace
}  // namespace video_tests
