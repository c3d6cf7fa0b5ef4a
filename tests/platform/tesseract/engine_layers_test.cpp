#include "platform/tesseract/engine_layers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "picture_set.h"
#include "platform/tesseract/engine_curves.h"
#include "platform/tesseract/engine_function.h"
#include "platform/tesseract/line_reader.h"
#include "platform/tesseract/screen_text_reader.h"

namespace platform::tesseract {

namespace {

/// Puts back what other tests expect.
class EngineLayers : public ::testing::Test {
  protected:
    ~EngineLayers() override { chooseLayers(LayerImplementation::ownWhereKnown); }
};

std::vector<std::vector<std::string>> candidatesOf(ScreenTextReader& reader,
                                                   const base::Image& picture) {
    std::vector<std::vector<std::string>> all;
    const auto observations = reader.read(picture);
    EXPECT_TRUE(observations) << observations.error().sentence;
    for (const auto& observation : observations.value()) {
        all.push_back(observation.candidates);
    }
    return all;
}

/// Confidences are whole numbers of many sums: they show a difference before the text does.
std::vector<int> confidencesOf(LineReader& reader, const InkPlane& picture) {
    const LineReading reading = reader.read(picture);
    std::vector<int> all = reading.wordConfidences;
    all.push_back(reading.confidence);
    return all;
}

/// Letters of no alphabet, so that the engine is unsure.
InkPlane strokes(int width, unsigned seed) {
    InkPlane picture(width, 36, 255);
    for (int stroke = 4; stroke + 8 < width; stroke += 9) {
        seed = seed * 1664525U + 1013904223U;
        const int top = 6 + static_cast<int>(seed >> 28);
        for (int y = top; y < 30; ++y) {
            for (int x = 0; x < 3; ++x) {
                const int slant = static_cast<int>((seed >> 20) % 3) * (y - top) / 12;
                picture.at(stroke + x + slant, y) = static_cast<std::uint8_t>(seed >> 26);
            }
        }
    }
    return picture;
}

}  // namespace

TEST_F(EngineLayers, own_layers_are_used_for_the_engine_that_debian_12_has) {
    using Version = const char* (*)();
    const auto version = engineFunction<Version>("_ZN9tesseract11TessBaseAPI7VersionEv");
    ASSERT_NE(version, nullptr);
    if (std::string(version()) != "5.3.0") {
        GTEST_SKIP() << "this engine is " << version() << " and keeps its own layers";
    }
    EXPECT_TRUE(usesOwnLayers());
    chooseLayers(LayerImplementation::engine);
    EXPECT_FALSE(usesOwnLayers());
}

TEST_F(EngineLayers, own_layers_read_what_the_engines_own_read) {
    auto reader = ScreenTextReader::create({"deu", "eng"}, CrewSize::one);
    ASSERT_TRUE(reader) << reader.error().sentence;
    for (const char* name : {"table01", "prose01", "accent01", "mixed01"}) {
        const auto picture =
            bench::loadPicture(LUMAFRAME_TEST_DATA "/ocr/" + std::string(name) + ".png");
        ASSERT_TRUE(picture) << name;
        chooseLayers(LayerImplementation::ownWhereKnown);
        const auto own = candidatesOf(*reader.value(), picture.value());
        chooseLayers(LayerImplementation::engine);
        EXPECT_EQ(own, candidatesOf(*reader.value(), picture.value())) << name;
        EXPECT_FALSE(own.empty()) << name;
    }
}

TEST_F(EngineLayers, own_layers_are_as_sure_as_the_engines_own) {
    auto reader = LineReader::create({"eng"});
    ASSERT_TRUE(reader) << reader.error().sentence;
    for (unsigned seed = 0; seed < 40; ++seed) {
        const InkPlane picture = strokes(60 + 23 * static_cast<int>(seed), seed);
        chooseLayers(LayerImplementation::ownWhereKnown);
        const auto own = confidencesOf(*reader.value(), picture);
        chooseLayers(LayerImplementation::engine);
        EXPECT_EQ(own, confidencesOf(*reader.value(), picture)) << seed;
    }
}

TEST(EngineCurves, tangents_are_those_of_the_table_and_keep_their_sign) {
    ASSERT_TRUE(knowsCurves());
    std::array<float, 9> values{0, 0.5F, -0.5F, 1.001F, -3, 15.99F, -15.999F, 16, -200};
    const auto before = values;
    bendByTangent(values.data(), static_cast<int>(values.size()));
    for (std::size_t index = 0; index < values.size(); ++index) {
        EXPECT_NEAR(values[index], std::tanh(before[index]), 2e-6F) << before[index];
    }
}

TEST(EngineCurves, halves_are_rounded_away_from_zero_and_the_rest_is_cut) {
    constexpr std::array<float, 9> values{
        0, 0.5F / 127, -0.5F / 127, 1.4F / 127, -1.6F / 127, 126.5F / 127, 1.5F, -1, -7};
    std::array<std::int8_t, 9> quantized{};
    quantize(values.data(), static_cast<int>(values.size()), quantized.data());
    EXPECT_THAT(quantized, ::testing::ElementsAre(0, 1, -1, 1, -2, 127, 127, -127, -127));
}

TEST(EngineCurves, a_memory_forgets_and_takes_in_as_its_gates_are_open) {
    constexpr float open = 20;
    constexpr float shut = -20;
    constexpr std::array<float, 3> cell{1, 1, 1};
    constexpr std::array<float, 3> input{open, shut, open};
    constexpr std::array<float, 3> forget{shut, open, open};
    constexpr std::array<float, 3> output{open, open, shut};
    std::array<float, 3> states{0.25F, 0.25F, 200};
    std::array<float, 3> outputs{};
    remember({cell.data(), input.data(), forget.data(), output.data()}, 3, states.data(),
             outputs.data());
    EXPECT_NEAR(states[0], std::tanh(1.0F), 1e-5F);
    EXPECT_NEAR(states[1], 0.25F, 1e-5F);
    EXPECT_EQ(states[2], 100);
    EXPECT_NEAR(outputs[0], std::tanh(std::tanh(1.0F)), 1e-5F);
    EXPECT_NEAR(outputs[2], 0, 1e-5F);
}

}  // namespace platform::tesseract
