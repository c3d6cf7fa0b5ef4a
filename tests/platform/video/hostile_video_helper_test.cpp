// A helper that misbehaves costs its film, in one answer, and nothing else.
#include <fcntl.h>
#include <sys/wait.h>

#include <cerrno>
#include <filesystem>
#include <iterator>

#include "platform/video/helper_video_looper.h"
#include "video/video_fixture.h"

namespace video_tests {
namespace {

constexpr const char* hasEnded = "The video helper has ended unexpectedly.";
constexpr const char* makesNoSense = "The video helper gave an answer that makes no sense.";

class HostileVideoHelper : public VideoFixture {
  protected:
    ~HostileVideoHelper() override {
        looper_.reset();
        siginfo_t information{};
        EXPECT_TRUE(::waitid(P_ALL, 0, &information, WEXITED | WNOHANG | WNOWAIT) != 0 &&
                    errno == ECHILD)
            << "a helper was left behind";
    }
    void startHelper(const std::string& program) {
        const platform::helper::OwnedDescriptor film(::open("/dev/null", O_RDONLY | O_CLOEXEC));
        auto started =
            platform::video::HelperVideoLooper::start(program, film, queue_, watch_.watch());
        ASSERT_TRUE(started) << started.error().sentence;
        looper_ = std::move(started.value());
    }
    void startHostile(const std::string& way) {
        const std::string link = directory_.path() + "/" + way;
        std::filesystem::create_symlink(LUMAFRAME_HOSTILE_VIDEO_HELPER, link);
        startHelper(link);
    }
    std::string error() {
        const Answer answer = next({8, 8});
        return answer ? "none" : answer.error().sentence;
    }
    /// Until the helper has said what it says unasked, or has ended.
    void hearIt() {
        desktop::require("something from the helper", [this] { return watch_.dispatch(); });
    }
};

class Misbehaviour : public HostileVideoHelper,
                     public testing::WithParamInterface<std::pair<const char*, const char*>> {};

TEST_P(Misbehaviour, fails_the_picture_with_a_reason) {
    startHostile(GetParam().first);
    EXPECT_EQ(error(), GetParam().second);
    EXPECT_EQ(error(), hasEnded) << "there is nothing more";
}

INSTANTIATE_TEST_SUITE_P(HostileVideoHelper, Misbehaviour,
                         testing::Values(std::pair("dies_when_asked", hasEnded),
                                         std::pair("says_garbage", makesNoSense),
                                         std::pair("says_too_much", makesNoSense),
                                         std::pair("says_too_little", makesNoSense),
                                         std::pair("answers_for_another_slot", makesNoSense),
                                         std::pair("answers_with_another_size", makesNoSense)),
                         [](const auto& way) { return std::string(way.param.first); });

TEST_F(HostileVideoHelper, that_goes_back_in_time_is_not_believed) {
    startHostile("goes_back_in_time");
    EXPECT_EQ(error(), "none");
    EXPECT_EQ(error(), makesNoSense);
}

TEST_F(HostileVideoHelper, that_lacks_a_library_says_which) {
    startHostile("lacks_a_library");
    EXPECT_EQ(error(),
              "The libraries that decode video are missing; please install libavformat, "
              "libavcodec and libswscale.");
}

TEST_F(HostileVideoHelper, that_has_died_before_it_is_asked_is_noticed_and_told_when_asked) {
    startHostile("dies_at_once");
    hearIt();
    EXPECT_FALSE(watch_.dispatch()) << "it is watched no longer";
    EXPECT_EQ(error(), hasEnded);
}

TEST_F(HostileVideoHelper, that_speaks_unasked_is_ended) {
    for (const char* const way : {"speaks_unasked", "answers_twice"}) {
        startHostile(way);
        if (std::string(way) == "answers_twice") {
            EXPECT_EQ(error(), "none");
        }
        hearIt();
        EXPECT_EQ(error(), hasEnded) << way;
        looper_.reset();
    }
}

TEST_F(HostileVideoHelper, that_sends_descriptors_does_not_get_them_in) {
    const auto openCount = [] {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
    };
    startHostile("sends_descriptors");
    const auto before = openCount();
    EXPECT_EQ(error(), "none");
    EXPECT_EQ(openCount(), before);
}

TEST_F(HostileVideoHelper, that_never_answers_holds_nobody_up) {
    startHostile("never_answers");
    looper_->nextFrame({8, 8}, [](const Answer&) { ADD_FAILURE() << "it answered"; });
    watch_.dispatch();
    // The end of the test ends it, and waits for its end.
    looper_.reset();
    queue_.runAll();
}

TEST_F(HostileVideoHelper, that_is_not_there_is_told_at_once) {
    makeFilm(film(), {.pictureCount = 1});
    platform::video::FilmResources resources(directory_.path(), "/nonexistent/helper", queue_,
                                             watch_.watch());
    const auto opened = resources.open("film");
    ASSERT_FALSE(opened);
    EXPECT_EQ(opened.error().sentence,
              "The helper program /nonexistent/helper cannot be started: No such file or "
              "directory.");
}

TEST_F(HostileVideoHelper, an_answer_does_not_come_after_the_film_was_closed) {
    startHostile("dies_at_once");
    hearIt();
    looper_->nextFrame({8, 8}, [](const Answer&) { ADD_FAILURE() << "it answered"; });
    looper_.reset();
    queue_.runAll();
}

TEST_F(HostileVideoHelper, a_view_that_no_picture_fits_into_is_refused) {
    startHostile("never_answers");
    const Answer answer = next({20000, 8});
    ASSERT_FALSE(answer);
    EXPECT_EQ(answer.error().sentence, "The video's view is too large.");
}

}  // namespace
}  // namespace video_tests
