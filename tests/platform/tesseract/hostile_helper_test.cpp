#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>

#include "platform/tesseract/helper_fixture.h"

namespace {

using namespace tesseract_tests;
using std::chrono::milliseconds;

/// Long enough for a start on a busy machine, short enough to wait for.
constexpr HelperTextRecognizer::Limits shortPictureLimits{
    .start = milliseconds(15000), .reading = {.picture = milliseconds(1000)}};

class HostileHelper : public HelperFixture {
  protected:
    HelperTextRecognizer& start(const std::string& behaviour,
                                const HelperTextRecognizer::Limits& limits = {}) {
        const std::string path = directory_.path(behaviour);
        std::filesystem::create_symlink(LUMAFRAME_HOSTILE_HELPER, path);
        return use(path, limits);
    }
};

/// Each fails the first recognition, with a sentence of its own, and the second one reads.
struct Case {
    const char* behaviour;
    const char* sentence;
};

class MisbehaviourTest : public HostileHelper, public testing::WithParamInterface<Case> {};

TEST_P(MisbehaviourTest, fails_that_recognition_and_the_next_one_starts_a_fresh_helper) {
    auto& recognizer = start(std::string(GetParam().behaviour) + "_once", shortPictureLimits);
    const auto failed = recognizer.recognize(blankPicture());
    ASSERT_FALSE(failed);
    EXPECT_EQ(failed.error().sentence, GetParam().sentence);
    EXPECT_EQ(recognizer.helperProcessIdentifier(), 0);
    EXPECT_FALSE(hasChildren());
    EXPECT_EQ(textsOf(recognizer.recognize(blankPicture())), std::vector<std::string>{"good"});
}

constexpr const char* ended = "The text recognition helper has ended unexpectedly.";
constexpr const char* late = "The text recognition helper did not answer in time.";
constexpr const char* nonsense = "The text recognition helper gave an answer that makes no sense.";

INSTANTIATE_TEST_SUITE_P(
    AHelperThat, MisbehaviourTest,
    testing::Values(Case{"dies", ended}, Case{"hangs", late}, Case{"drips", late},
                    Case{"closes", ended}, Case{"never_stops", nonsense}, Case{"babbles", nonsense},
                    Case{"answers_nothing", nonsense}, Case{"counts_wrong", nonsense},
                    Case{"claims_length", nonsense}, Case{"is_huge", nonsense},
                    Case{"sends_escapes", nonsense}, Case{"sends_bad_text", nonsense},
                    Case{"answers_another", nonsense}, Case{"is_ready_again", nonsense},
                    Case{"fails", "It is too dark to read."}, Case{"fails_in_silence", nonsense},
                    Case{"dies_at_start", ended}, Case{"babbles_at_start", nonsense},
                    Case{"answers_at_start", nonsense},
                    Case{"fails_at_start", "There is no engine."},
                    Case{"lacks_a_library",
                         "The text recognition engine is missing; please install the package "
                         "libtesseract5."}),
    [](const auto& information) { return std::string(information.param.behaviour); });

TEST_F(HostileHelper, one_that_never_gets_ready_is_given_up) {
    auto& recognizer = start("hangs_at_start", {.start = milliseconds(100)});
    const auto failed = recognizer.recognize(blankPicture());
    ASSERT_FALSE(failed);
    EXPECT_EQ(failed.error().sentence, late);
    EXPECT_FALSE(hasChildren());
}

TEST_F(HostileHelper, the_wait_grows_with_the_picture_up_to_a_limit) {
    auto& recognizer = start("hangs", {.reading = {.picture = milliseconds(1),
                                                   .megapixel = milliseconds(100000),
                                                   .longest = milliseconds(300)}});
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(recognizer.recognize(blankPicture(1000, 10)));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, milliseconds(300));
}

TEST_F(HostileHelper, one_that_dies_afterwards_is_reaped_without_being_asked) {
    auto& recognizer = start("dies_afterwards");
    EXPECT_EQ(textsOf(recognizer.recognize(blankPicture())), std::vector<std::string>{"good"});
    ASSERT_TRUE(desktop::waitUntil([&] { return watch_.dispatch(); }));
    queue_.runAll();
    EXPECT_EQ(recognizer.helperProcessIdentifier(), 0);
    EXPECT_FALSE(hasChildren());
}

TEST_F(HostileHelper, one_that_died_meanwhile_costs_no_recognition) {
    auto& recognizer = start("dies_afterwards");
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(textsOf(recognizer.recognize(blankPicture())), std::vector<std::string>{"good"});
        ASSERT_TRUE(desktop::waitUntil([&] { return watch_.dispatch(); }));
    }
}

TEST_F(HostileHelper, what_is_said_without_being_asked_is_not_taken_for_an_answer) {
    auto& recognizer = start("talks_afterwards");
    ASSERT_TRUE(recognizer.recognize(blankPicture()));
    const int first = recognizer.helperProcessIdentifier();
    ASSERT_TRUE(recognizer.recognize(blankPicture()));
    EXPECT_NE(recognizer.helperProcessIdentifier(), first);
}

TEST_F(HostileHelper, a_program_that_is_not_there_is_named) {
    auto& recognizer = use("/nonexistent/helper");
    recognizer.prepare();
    const auto failed = recognizer.recognize(blankPicture());
    ASSERT_FALSE(failed);
    EXPECT_NE(failed.error().sentence.find("/nonexistent/helper"), std::string::npos);
    EXPECT_EQ(failed.error().kind, base::ErrorKind::unavailable);
}

}  // namespace
