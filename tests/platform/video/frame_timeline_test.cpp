#include "platform/video/frame_timeline.h"

#include <gmock/gmock.h>

namespace {

using namespace std::chrono_literals;
using std::chrono::microseconds;
using Timeline = platform::video::FrameTimeline;

TEST(FrameTimeline, begins_at_nothing_whatever_the_first_stamp_is) {
    EXPECT_EQ(Timeline().place({.stamp = 5s}), 0us);
    EXPECT_EQ(Timeline().place({.stamp = -5s}), 0us);
    EXPECT_EQ(Timeline().place({}), 0us);
}

TEST(FrameTimeline, pictures_keep_the_distances_of_their_stamps) {
    Timeline timeline;
    timeline.place({.stamp = -40ms});
    EXPECT_EQ(timeline.place({.stamp = 0ms}), 40ms);
    EXPECT_EQ(timeline.place({.stamp = 500ms}), 540ms);
}

TEST(FrameTimeline, a_round_begins_when_the_last_picture_has_lasted_its_own_duration) {
    Timeline timeline;
    timeline.place({.stamp = 0ms, .duration = 40ms});
    timeline.place({.stamp = 40ms, .duration = 700ms});
    timeline.beginRound();
    EXPECT_EQ(timeline.place({.stamp = 0ms, .duration = 40ms}), 740ms);
    EXPECT_EQ(timeline.place({.stamp = 40ms, .duration = 700ms}), 780ms);
}

TEST(FrameTimeline, a_picture_without_stamp_comes_after_the_one_before_it) {
    Timeline timeline;
    timeline.place({.stamp = 0ms, .duration = 30ms});
    EXPECT_EQ(timeline.place({.duration = 20ms}), 30ms);
    EXPECT_EQ(timeline.place({.stamp = 50ms}), 50ms);
}

TEST(FrameTimeline, a_film_without_stamps_goes_by_durations) {
    Timeline timeline;
    timeline.place({.duration = 30ms});
    EXPECT_EQ(timeline.place({.stamp = 3s, .duration = 30ms}), 30ms);
    EXPECT_EQ(timeline.place({}), 60ms);
    EXPECT_EQ(timeline.place({}), 60ms + Timeline::defaultDuration);
}

TEST(FrameTimeline, a_stamp_that_goes_back_or_stands_still_counts_for_nothing) {
    Timeline timeline;
    timeline.place({.stamp = 0ms, .duration = 40ms});
    EXPECT_EQ(timeline.place({.stamp = 0ms, .duration = 40ms}), 40ms);
    EXPECT_EQ(timeline.place({.stamp = -1s, .duration = 40ms}), 80ms);
}

TEST(FrameTimeline, a_stamp_absurdly_far_ahead_counts_for_nothing) {
    Timeline timeline;
    timeline.place({.stamp = 0ms, .duration = 40ms});
    EXPECT_EQ(timeline.place({.stamp = 61min, .duration = 40ms}), 40ms);
    EXPECT_EQ(timeline.place({.stamp = microseconds::max(), .duration = 40ms}), 80ms);
    EXPECT_EQ(timeline.place({.stamp = microseconds::min(), .duration = 40ms}), 120ms);
}

TEST(FrameTimeline, no_film_asks_for_more_pictures_a_second_than_a_display_shows) {
    Timeline timeline;
    timeline.place({.stamp = 0us, .duration = 1us});
    EXPECT_EQ(timeline.place({.stamp = 1us, .duration = 1us}), Timeline::shortestDuration);
    timeline.beginRound();
    EXPECT_EQ(timeline.place({.stamp = 0us}), 2 * Timeline::shortestDuration);
}

TEST(FrameTimeline, a_duration_of_nothing_or_less_is_none) {
    Timeline timeline;
    timeline.place({.duration = 0us});
    EXPECT_EQ(timeline.place({.duration = -1s}), Timeline::defaultDuration);
    EXPECT_EQ(timeline.place({.duration = microseconds::max()}), 2 * Timeline::defaultDuration);
    EXPECT_EQ(timeline.place({}), 2 * Timeline::defaultDuration + Timeline::longestDuration);
}

}  // namespace
