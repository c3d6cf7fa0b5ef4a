#include "platform/tesseract/engine_curves.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <random>

#include "made_layer.h"
#include "own_parts.h"
#include "platform/tesseract/engine_function.h"
#include "platform/tesseract/engine_objects.h"
#include "platform/tesseract/engine_symbols.h"

namespace platform::tesseract {

namespace {

/// For any processor, and for this one.
class EngineCurves : public OwnParts, public ::testing::WithParamInterface<CurveLoops> {
  protected:
    void SetUp() override {
        OwnParts::SetUp();
        chooseCurveLoops(GetParam());
    }
};
INSTANTIATE_TEST_SUITE_P(Loops, EngineCurves, bothLoops, loopsName);

constexpr int logisticType = 16;
constexpr int tangentType = 19;

/// As much of a layer of the engine as its curves look at.
struct CurvedLayer : ::tesseract::FullyConnected {
    CurvedLayer(int type, int outputs) : FullyConnected{} {
        type_ = type;
        outputs_ = outputs;
    }
};

/// The engine's own curves.
std::vector<float> bentByEngine(int type, std::vector<float> values) {
    CurvedLayer layer(type, static_cast<int>(values.size()));
    using Step = void (*)(::tesseract::FullyConnected*, int, float*);
    engineFunction<Step>("_ZN9tesseract14FullyConnected15ForwardTimeStepEiPf")(&layer, 0,
                                                                               values.data());
    return values;
}

std::vector<std::uint32_t> bitsOf(const std::vector<float>& values) {
    std::vector<std::uint32_t> bits;
    std::transform(values.begin(), values.end(), std::back_inserter(bits),
                   [](float value) { return std::bit_cast<std::uint32_t>(value); });
    return bits;
}

/// Of both signs, between the places of the table and on them, near its end and beyond.
std::vector<float> manyNumbers() {
    std::vector<float> values{0, -0.0F, 1e-30F, 15.9960927F, 15.99609375F, 16, 1e6F};
    std::minstd_rand random(3);
    std::uniform_real_distribution<float> any(0, 17);
    for (int index = 0; index < 200'000; ++index) {
        values.push_back(any(random));
    }
    for (int place = 0; place <= 4100; ++place) {
        const float on = static_cast<float>(place) / 256;
        values.insert(values.end(), {on, std::nextafter(on, 0.0F), std::nextafter(on, 20.0F)});
    }
    const std::size_t count = values.size();
    for (std::size_t index = 0; index < count; ++index) {
        values.push_back(-values[index]);
    }
    return values;
}

/// As the engine has it: one step after the other.
std::vector<float> remembered(const std::array<std::vector<float>, 4>& sums,
                              std::vector<float>& states) {
    const auto cell = bentByEngine(tangentType, sums[0]);
    const auto input = bentByEngine(logisticType, sums[1]);
    const auto forget = bentByEngine(logisticType, sums[2]);
    const auto output = bentByEngine(logisticType, sums[3]);
    for (std::size_t index = 0; index < states.size(); ++index) {
        // Each is rounded before the next, on whatever processor.
        const volatile float kept = states[index] * forget[index];
        const volatile float added = cell[index] * input[index];
        states[index] = std::clamp(kept + added, -100.0F, 100.0F);
    }
    auto outputs = bentByEngine(tangentType, states);
    for (std::size_t index = 0; index < states.size(); ++index) {
        outputs[index] *= output[index];
    }
    return outputs;
}

}  // namespace

TEST_P(EngineCurves, tangents_are_the_engines_own_to_the_last_bit) {
    auto values = manyNumbers();
    const auto expected = bentByEngine(tangentType, values);
    bendByTangent(values.data(), static_cast<int>(values.size()));
    EXPECT_TRUE(bitsOf(values) == bitsOf(expected));
}

TEST_P(EngineCurves, a_memory_goes_on_as_the_engines_own_to_the_last_bit) {
    const auto states = manyNumbers();
    std::array<std::vector<float>, 4> sums;
    std::minstd_rand random(5);
    std::normal_distribution<float> around(0, 6);
    for (auto& sum : sums) {
        sum.resize(states.size());
        std::generate(sum.begin(), sum.end(), [&] { return around(random); });
    }
    auto expectedStates = states;
    const auto expected = remembered(sums, expectedStates);
    auto ownStates = states;
    std::vector<float> outputs(states.size());
    remember({sums[0].data(), sums[1].data(), sums[2].data(), sums[3].data()},
             static_cast<int>(states.size()), ownStates.data(), outputs.data());
    EXPECT_TRUE(bitsOf(ownStates) == bitsOf(expectedStates));
    EXPECT_TRUE(bitsOf(outputs) == bitsOf(expected));
}

TEST_P(EngineCurves, numbers_are_rounded_as_the_engine_rounds_them) {
    const auto values = manyNumbers();
    const int count = static_cast<int>(values.size());
    Numbers numbers;
    numbers.resize(1, 1, count);
    chooseParts(PartImplementation::engine);
    numbers.io().WriteTimeStepPart(0, 0, count, values.data());
    std::vector<std::int8_t> own(values.size());
    quantize(values.data(), count, own.data());
    EXPECT_TRUE(std::equal(own.begin(), own.end(), numbers.io().integers().values));
}

TEST_P(EngineCurves, tangents_are_those_of_the_table_and_keep_their_sign) {
    std::array<float, 9> values{0, 0.5F, -0.5F, 1.001F, -3, 15.99F, -15.999F, 16, -200};
    const auto before = values;
    bendByTangent(values.data(), static_cast<int>(values.size()));
    for (std::size_t index = 0; index < values.size(); ++index) {
        EXPECT_NEAR(values[index], std::tanh(before[index]), 2e-6F) << before[index];
    }
}

TEST_P(EngineCurves, what_is_no_number_stays_within_the_table) {
    std::array<float, 9> values{};
    values.fill(std::numeric_limits<float>::quiet_NaN());
    bendByTangent(values.data(), static_cast<int>(values.size()));
    EXPECT_THAT(values, ::testing::Each(
                            ::testing::Truly([](float value) { return std::isfinite(value); })));
    values.fill(std::numeric_limits<float>::infinity());
    bendByTangent(values.data(), static_cast<int>(values.size()));
    EXPECT_THAT(values, ::testing::Each(1.0F));
}

TEST_P(EngineCurves, halves_are_rounded_away_from_zero_and_the_rest_is_cut) {
    constexpr std::array<float, 9> values{
        0, 0.5F / 127, -0.5F / 127, 1.4F / 127, -1.6F / 127, 126.5F / 127, 1.5F, -1, -7};
    std::array<std::int8_t, 9> quantized{};
    quantize(values.data(), static_cast<int>(values.size()), quantized.data());
    EXPECT_THAT(quantized, ::testing::ElementsAre(0, 1, -1, 1, -2, 127, 127, -127, -127));
}

TEST_P(EngineCurves, a_memory_forgets_and_takes_in_as_its_gates_are_open) {
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

TEST(EngineTable, of_another_size_is_none) {
    const auto* table = engineFunction<const float*>(symbols::tangentTable);
    if (table == nullptr) {
        GTEST_SKIP() << "this engine keeps its tables to itself";
    }
    Dl_info found{};
    void* entry = nullptr;
    ASSERT_NE(::dladdr1(table, &found, &entry, RTLD_DL_SYMENT), 0);
    const std::size_t bytes = static_cast<ElfW(Sym)*>(entry)->st_size;
    EXPECT_EQ(engineTable<std::byte>(symbols::tangentTable, bytes),
              reinterpret_cast<const std::byte*>(table));
    EXPECT_EQ(engineTable<std::byte>(symbols::tangentTable, bytes - 4), nullptr);
    EXPECT_EQ(engineTable<std::byte>(symbols::tangentTable, bytes * 2), nullptr);
    EXPECT_EQ(engineTable<std::byte>("no_table_of_the_engine", bytes), nullptr);
}

}  // namespace platform::tesseract
