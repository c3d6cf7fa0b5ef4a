#include <gtest/gtest.h>

#include "picture_set.h"
#include "reading_run.h"
#include "set_score.h"

namespace {

/// As shares of the characters, and of the lines.
struct Limits {
    double wrongCharacters;
    double wrongCharactersOfOneKind;
    double exactLines;
    /// That the set has at least: less text is another set.
    long characters;
    /// How many kinds of pictures it has, and how many pictures without text.
    std::size_t kinds;
    long emptyPictures;
};

bench::SetScore scoreOf(const std::filesystem::path& folder) {
    bench::SetScore score;
    const auto samples = bench::loadSamples(folder);
    EXPECT_TRUE(samples) << samples.error().sentence;
    if (!samples) {
        return score;
    }
    bench::ReadingRun run(platform::tesseract::CrewSize::two);
    for (const bench::Sample& sample : samples.value()) {
        const auto reading = run.read(sample);
        EXPECT_TRUE(reading) << sample.name << ": " << reading.error().sentence;
        if (reading) {
            score.add(sample, bench::scoreText(sample.truth, reading.value().text));
        }
    }
    return score;
}

void expectWithin(const Limits& limits, const bench::SetScore& score) {
    EXPECT_GE(score.whole().characters, limits.characters);
    EXPECT_LE(score.whole().errorRate(), limits.wrongCharacters);
    EXPECT_GE(score.whole().exactShare(), limits.exactLines);
    EXPECT_EQ(score.emptyPictures(), limits.emptyPictures);
    EXPECT_EQ(score.charactersFromNothing(), 0);
    EXPECT_EQ(score.categories().size(), limits.kinds);
    for (const auto& [kind, ofKind] : score.categories()) {
        // A kind may stand exactly at the limit, as 6 characters of 400 do.
        EXPECT_LE(static_cast<double>(ofKind.wrongCharacters),
                  limits.wrongCharactersOfOneKind * static_cast<double>(ofKind.characters) + 1e-6)
            << kind << ": " << ofKind.wrongCharacters << " of " << ofKind.characters;
    }
}

TEST(RecognitionGuard, rendered_screen_text_stays_right) {
    constexpr Limits limits{.wrongCharacters = 0.007,
                            .wrongCharactersOfOneKind = 0.015,
                            .exactLines = 0.94,
                            .characters = 9000,
                            .kinds = 17,
                            .emptyPictures = 3};
    expectWithin(limits, scoreOf(LUMAFRAME_TEST_DATA "/ocr"));
}

TEST(RecognitionGuard, pictures_of_other_programs_stay_right) {
    const std::filesystem::path folder = LUMAFRAME_TEST_DATA "/../../../shared/ocr/real";
    if (!std::filesystem::exists(folder / "manifest.json")) {
        GTEST_SKIP() << "the pictures of other programs are not beside this checkout";
    }
    constexpr Limits limits{.wrongCharacters = 0.015,
                            .wrongCharactersOfOneKind = 0.04,
                            .exactLines = 0.8,
                            .characters = 19000,
                            .kinds = 14,
                            .emptyPictures = 3};
    expectWithin(limits, scoreOf(folder));
}

}  // namespace
