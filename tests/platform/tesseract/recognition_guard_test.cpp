#include <gtest/gtest.h>

#include "picture_set.h"
#include "reading_run.h"
#include "text_score.h"

namespace {

/// What a whole set was read like; pictures without text count what was read on them.
bench::TextScore scoreSet(const std::filesystem::path& folder) {
    bench::TextScore whole;
    const auto samples = bench::loadSamples(folder);
    EXPECT_TRUE(samples) << samples.error().sentence;
    if (!samples) {
        return whole;
    }
    bench::ReadingRun run(platform::tesseract::CrewSize::two);
    for (const bench::Sample& sample : samples.value()) {
        const auto reading = run.read(sample);
        EXPECT_TRUE(reading) << reading.error().sentence;
        if (reading) {
            whole += bench::scoreText(sample.truth, reading.value().text);
        }
    }
    return whole;
}

TEST(RecognitionGuard, rendered_screen_text_stays_right) {
    const bench::TextScore score = scoreSet(LUMAFRAME_TEST_DATA "/ocr");
    EXPECT_GT(score.characters, 9000);
    EXPECT_LE(score.errorRate(), 0.007);
}

TEST(RecognitionGuard, pictures_of_other_programs_stay_right) {
    const std::filesystem::path folder = LUMAFRAME_TEST_DATA "/../../../shared/ocr/real";
    if (!std::filesystem::exists(folder / "manifest.json")) {
        GTEST_SKIP() << "the pictures of other programs are not beside this checkout";
    }
    const bench::TextScore score = scoreSet(folder);
    EXPECT_GT(score.characters, 19000);
    EXPECT_LE(score.errorRate(), 0.015);
}

}  // namespace
