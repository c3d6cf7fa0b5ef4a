#include "ui/video_coordinator.h"

#include <gmock/gmock.h>

#include "doubles/fake_log.h"
#include "doubles/fake_video_looper.h"

namespace {

using namespace std::chrono_literals;
using std::chrono::microseconds;
using testing::ElementsAre;
using testing::IsEmpty;

/// A view over a film whose pictures the test delivers, at times that the test sets.
class VideoCoordinator : public testing::Test {
  protected:
    ui::VideoCoordinator makeCoordinator() {
        return {"animation",
                {.loopers = loopers,
                 .log = log,
                 .now = [this] { return now; },
                 .viewSize = [this] { return size; },
                 .wakeAfter = [this](microseconds delay) { wakeDelay = delay; },
                 .cancelWake = [this] { wakeDelay.reset(); },
                 .show =
                     [this](const base::Image& image) {
                         shown.push_back(image.isEmpty() ? 0 : image.row(0)[0]);
                     },
                 .embed =
                     [this](ui::VideoView* view) {
                         embedded.push_back(view != nullptr ? view->handle() : 0);
                     }}};
    }
    /// Lets the time come that was asked for.
    void reachWake() {
        ASSERT_TRUE(wakeDelay);
        now += *std::exchange(wakeDelay, std::nullopt);
        coordinator.wake();
    }

    doubles::FakeVideoLoopers loopers;
    doubles::FakeLog log;
    base::PixelSize size{400, 250};
    ui::VideoCoordinator::Moment now{1h};
    std::optional<microseconds> wakeDelay;
    /// The greys of the pictures that the view showed; 0 for blank.
    std::vector<int> shown;
    /// The system's views that the view had in it; 0 for none any more.
    std::vector<std::uintptr_t> embedded;
    ui::VideoCoordinator coordinator = makeCoordinator();
};

TEST_F(VideoCoordinator, nothing_is_opened_before_somebody_sees_the_view) {
    EXPECT_THAT(loopers.opened, IsEmpty());
    coordinator.play();
    EXPECT_THAT(loopers.opened, ElementsAre("animation"));
    EXPECT_THAT(loopers.requests, ElementsAre(base::PixelSize{400, 250}));
    EXPECT_THAT(shown, IsEmpty());
}

TEST_F(VideoCoordinator, the_first_picture_is_shown_at_once_and_each_further_one_at_its_moment) {
    coordinator.play();
    loopers.deliver(0us, 1);
    EXPECT_THAT(shown, ElementsAre(1));

    now += 4ms;
    loopers.deliver(33333us, 2);
    EXPECT_EQ(wakeDelay, 29333us);
    EXPECT_THAT(shown, ElementsAre(1));

    reachWake();
    EXPECT_THAT(shown, ElementsAre(1, 2));
    EXPECT_TRUE(loopers.hasRequest());
}

TEST_F(VideoCoordinator, the_moments_are_counted_from_the_beginning_so_that_delays_do_not_add_up) {
    coordinator.play();
    loopers.deliver(0us);
    loopers.deliver(40ms);
    reachWake();
    // A timer that came 7 ms late.
    now += 7ms;
    loopers.deliver(80ms);
    EXPECT_EQ(wakeDelay, 33ms);
}

TEST_F(VideoCoordinator, a_picture_that_is_a_little_late_is_shown_at_once_and_the_rest_catches_up) {
    coordinator.play();
    loopers.deliver(0us, 1);
    now += 100ms;
    loopers.deliver(40ms, 2);
    EXPECT_THAT(shown, ElementsAre(1, 2));
    loopers.deliver(80ms, 3);
    EXPECT_THAT(shown, ElementsAre(1, 2, 3));
    loopers.deliver(120ms, 4);
    EXPECT_EQ(wakeDelay, 20ms);
}

TEST_F(VideoCoordinator, a_film_that_is_far_behind_goes_on_from_where_it_is) {
    coordinator.play();
    loopers.deliver(0us, 1);
    now += 5s;
    loopers.deliver(40ms, 2);
    EXPECT_THAT(shown, ElementsAre(1, 2));
    loopers.deliver(80ms, 3);
    EXPECT_EQ(wakeDelay, 40ms);
}

TEST_F(VideoCoordinator, the_size_of_the_view_is_asked_for_each_picture) {
    coordinator.play();
    size = {800, 500};
    loopers.deliver(0us);
    EXPECT_THAT(loopers.requests,
                ElementsAre(base::PixelSize{400, 250}, base::PixelSize{800, 500}));
}

TEST_F(VideoCoordinator, while_nobody_looks_nothing_is_asked_for_or_shown) {
    coordinator.play();
    loopers.deliver(0us, 1);
    coordinator.pause();
    loopers.deliver(40ms, 2);
    EXPECT_THAT(shown, ElementsAre(1));
    EXPECT_FALSE(loopers.hasRequest());
    EXPECT_EQ(wakeDelay, ui::VideoCoordinator::closeDelay);
}

TEST_F(VideoCoordinator, it_goes_on_with_the_next_picture_when_somebody_looks_again) {
    coordinator.play();
    loopers.deliver(0us, 1);
    coordinator.pause();
    loopers.deliver(40ms, 2);
    now += 3s;
    coordinator.play();
    EXPECT_THAT(shown, ElementsAre(1, 2));
    loopers.deliver(80ms, 3);
    EXPECT_EQ(wakeDelay, 40ms);
    EXPECT_EQ(loopers.opened.size(), 1U);
}

TEST_F(VideoCoordinator, a_picture_that_was_awaited_in_a_pause_is_awaited_anew) {
    coordinator.play();
    coordinator.pause();
    coordinator.play();
    EXPECT_EQ(wakeDelay, ui::VideoCoordinator::answerLimit);
    EXPECT_EQ(loopers.requests.size(), 1U);
    loopers.deliver(0us, 1);
    EXPECT_THAT(shown, ElementsAre(1));
}

TEST_F(VideoCoordinator, after_a_long_pause_the_film_is_closed_and_nothing_is_due_any_more) {
    coordinator.play();
    loopers.deliver(0us, 1);
    coordinator.pause();
    reachWake();
    EXPECT_EQ(loopers.openCount(), 0);
    EXPECT_FALSE(wakeDelay);
    EXPECT_THAT(shown, ElementsAre(1, 0));
    EXPECT_THAT(log.lines, IsEmpty());

    coordinator.play();
    EXPECT_EQ(loopers.opened.size(), 2U);
    loopers.deliver(0us, 3);
    EXPECT_THAT(shown, ElementsAre(1, 0, 3));
}

TEST_F(VideoCoordinator, a_film_that_was_ahead_of_its_moment_is_closed_after_a_long_pause_as_well) {
    coordinator.play();
    loopers.deliver(0us, 1);
    loopers.deliver(40ms, 2);
    coordinator.pause();
    EXPECT_EQ(wakeDelay, ui::VideoCoordinator::closeDelay);
    reachWake();
    EXPECT_EQ(loopers.openCount(), 0);
    EXPECT_FALSE(wakeDelay);
    EXPECT_THAT(shown, ElementsAre(1, 0));
    EXPECT_THAT(log.lines, IsEmpty());

    coordinator.play();
    EXPECT_EQ(loopers.opened.size(), 2U);
    loopers.deliver(0us, 3);
    EXPECT_THAT(shown, ElementsAre(1, 0, 3));
}

TEST_F(VideoCoordinator, a_film_that_is_not_there_is_silent_and_asked_for_only_once) {
    loopers.openError = base::Error{base::ErrorKind::notFound, "There is no such film."};
    coordinator.play();
    coordinator.pause();
    coordinator.play();
    EXPECT_EQ(loopers.opened.size(), 1U);
    EXPECT_THAT(log.lines, IsEmpty());
    EXPECT_FALSE(wakeDelay);
}

TEST_F(VideoCoordinator, a_file_without_video_is_silent) {
    coordinator.play();
    loopers.fail({base::ErrorKind::notFound, "There is no video track."});
    EXPECT_THAT(log.lines, IsEmpty());
    EXPECT_EQ(loopers.openCount(), 0);
    EXPECT_FALSE(wakeDelay);
}

TEST_F(VideoCoordinator, a_film_that_cannot_be_opened_is_one_line) {
    loopers.openError = base::Error{base::ErrorKind::failed, "Too many open files."};
    coordinator.play();
    EXPECT_THAT(log.lines, ElementsAre("Failed to load video: Too many open files."));
}

TEST_F(VideoCoordinator, a_film_that_breaks_is_one_line_and_blank_for_good) {
    coordinator.play();
    loopers.deliver(0us, 1);
    loopers.fail({base::ErrorKind::invalid, "Invalid data found."});
    EXPECT_THAT(log.lines, ElementsAre("Failed to load video: Invalid data found."));
    EXPECT_THAT(shown, ElementsAre(1, 0));
    EXPECT_EQ(loopers.openCount(), 0);

    coordinator.pause();
    coordinator.play();
    EXPECT_EQ(loopers.opened.size(), 1U);
    EXPECT_FALSE(wakeDelay);
}

TEST_F(VideoCoordinator, a_decoder_that_does_not_answer_is_given_up) {
    coordinator.play();
    EXPECT_EQ(wakeDelay, ui::VideoCoordinator::answerLimit);
    reachWake();
    EXPECT_THAT(log.lines,
                ElementsAre("Failed to load video: The video decoder did not answer in time."));
    EXPECT_EQ(loopers.openCount(), 0);
}

TEST_F(VideoCoordinator, a_film_that_the_system_shows_is_put_into_the_view_once_and_left_alone) {
    loopers.viewHandle = 7;
    coordinator.play();
    EXPECT_THAT(embedded, ElementsAre(7));
    loopers.answerView(base::Nothing{});
    coordinator.pause();
    coordinator.play();
    EXPECT_FALSE(wakeDelay);
    EXPECT_EQ(loopers.opened.size(), 1U);
    EXPECT_EQ(loopers.openCount(), 1);
    EXPECT_THAT(embedded, ElementsAre(7));
    EXPECT_THAT(shown, IsEmpty());
}

TEST_F(VideoCoordinator, a_film_that_the_system_cannot_show_is_one_line_and_its_view_goes) {
    loopers.viewHandle = 7;
    coordinator.play();
    loopers.answerView(base::Error{base::ErrorKind::failed, "It is damaged."});
    EXPECT_THAT(log.lines, ElementsAre("Failed to load video: It is damaged."));
    EXPECT_THAT(embedded, ElementsAre(7, 0));
    EXPECT_EQ(loopers.openCount(), 0);
}

TEST_F(VideoCoordinator, a_file_without_video_is_silent_when_the_system_shows_it) {
    loopers.viewHandle = 7;
    coordinator.play();
    loopers.answerView(base::Error{base::ErrorKind::notFound, "There is no video track."});
    EXPECT_THAT(log.lines, IsEmpty());
    EXPECT_THAT(embedded, ElementsAre(7, 0));
}

}  // namespace
