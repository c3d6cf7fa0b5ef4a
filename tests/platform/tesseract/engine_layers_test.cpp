#include "platform/tesseract/engine_layers.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <utility>

#include "made_layer.h"
#include "own_parts.h"
#include "picture_set.h"
#include "platform/tesseract/line_reader.h"
#include "platform/tesseract/screen_text_reader.h"
#include "platform/tesseract/thread_pair.h"

namespace platform::tesseract {

namespace {

/// With the loops for any processor, and with those for this one.
class EngineLayers : public OwnParts, public ::testing::WithParamInterface<CurveLoops> {
  protected:
    void SetUp() override {
        OwnParts::SetUp();
        chooseCurveLoops(GetParam());
    }
};
INSTANTIATE_TEST_SUITE_P(Loops, EngineLayers, bothLoops, loopsName);

/// In pixels; the narrowest and lowest there are, odd ones, and a line that is cut into bands.
constexpr std::pair<int, int> sizes[] = {{1, 1},  {2, 7},   {5, 2},   {1, 36},
                                         {83, 1}, {17, 12}, {12, 83}, {391, 36}};

/// Of each layer, how many calls were taken on this thread.
std::array<long, engineLayerCount> takenByEach() {
    std::array<long, engineLayerCount> taken{};
    for (int layer = 0; layer < engineLayerCount; ++layer) {
        taken[static_cast<std::size_t>(layer)] = takenCalls(static_cast<EngineLayer>(layer));
    }
    return taken;
}

/// Runs `read` with the parts of this program, every layer of which has to be called, and with
/// those of the engine alone: otherwise one of the two would be compared with itself.
template <class Read>
auto readByBoth(const Read& read) {
    const auto before = takenByEach();
    chooseParts(PartImplementation::ownWhereKnown);
    auto own = read();
    const auto after = takenByEach();
    for (std::size_t layer = 0; layer < after.size(); ++layer) {
        EXPECT_GT(after[layer], before[layer]) << "layer " << layer;
    }
    chooseParts(PartImplementation::engine);
    auto engines = read();
    EXPECT_EQ(takenByEach(), after);
    return std::pair(std::move(own), std::move(engines));
}

/// What both make of the same numbers, to the last bit; this program's `kind` of layer without
/// asking the engine.
void expectSame(EngineLayer kind, MadeLayer& layer, int features,
                std::pair<int, int> least = {1, 1}) {
    std::minstd_rand random(11);
    for (const auto& [width, height] : sizes) {
        if (width < least.first || height < least.second) {
            continue;
        }
        Numbers input;
        input.fill(width, height, features, random);
        const long refusedBefore = refusedCalls();
        const long takenBefore = takenCalls(kind);
        chooseParts(PartImplementation::ownWhereKnown);
        const auto own = layer.forward(input);
        EXPECT_EQ(refusedCalls(), refusedBefore) << width << " x " << height;
        EXPECT_GT(takenCalls(kind), takenBefore) << width << " x " << height;
        chooseParts(PartImplementation::engine);
        const auto takenByOwn = takenByEach();
        EXPECT_EQ(own, layer.forward(input)) << width << " x " << height;
        EXPECT_EQ(takenByEach(), takenByOwn) << width << " x " << height;
        EXPECT_FALSE(own.empty());
    }
    chooseParts(PartImplementation::ownWhereKnown);
}

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

/// As the engine names them; without the data of its way of finding scripts, which has no network.
std::vector<std::string> installedLanguages() {
    ::tesseract::TessBaseAPI engine;
    EXPECT_EQ(engine.Init(nullptr, "eng", ::tesseract::OEM_LSTM_ONLY), 0);
    std::vector<std::string> languages;
    engine.GetAvailableLanguagesAsVector(&languages);
    std::erase(languages, "osd");
    return languages;
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

TEST_P(EngineLayers, neighbours_are_gathered_as_by_the_engine) {
    for (const auto& [halfX, halfY] : {std::pair{1, 1}, {0, 2}, {3, 0}, {2, 1}}) {
        MadeLayer layer = madeConvolve(3, halfX, halfY);
        expectSame(EngineLayer::convolve, layer, 3);
    }
}

TEST_P(EngineLayers, the_largest_are_taken_as_by_the_engine) {
    for (const auto& [scaleX, scaleY] : {std::pair{1, 1}, {3, 3}, {2, 1}, {1, 5}}) {
        MadeLayer layer = madeMaxpool(16, scaleX, scaleY);
        expectSame(EngineLayer::maxpool, layer, 16, {scaleX, scaleY});
    }
}

TEST_P(EngineLayers, memories_remember_as_the_engines_own) {
    for (const LayerKind kind : {LayerKind::memory, LayerKind::summary}) {
        for (const auto& [inputs, states] : {std::pair{16, 48}, {7, 13}, {1, 1}, {70, 96}}) {
            MadeLayer layer = madeMemory(inputs, states, kind);
            expectSame(EngineLayer::memory, layer, inputs);
        }
    }
}

TEST_P(EngineLayers, layers_that_two_threads_compute_are_as_the_engines_own) {
    ThreadPair pair;
    const ThreadPair::Use use(&pair);
    MadeLayer convolve = madeConvolve(1, 1, 1);
    expectSame(EngineLayer::convolve, convolve, 1);
    MadeLayer tangents = madeTangents(9, 16);
    expectSame(EngineLayer::tangents, tangents, 9);
    MadeLayer maxpool = madeMaxpool(16, 3, 3);
    expectSame(EngineLayer::maxpool, maxpool, 16, {3, 3});
    for (const LayerKind kind : {LayerKind::memory, LayerKind::summary}) {
        MadeLayer layer = madeMemory(16, 48, kind);
        expectSame(EngineLayer::memory, layer, 16);
    }
}

TEST_P(EngineLayers, full_connections_bend_as_the_engines_own) {
    MadeLayer layer = madeTangents(9, 16);
    expectSame(EngineLayer::tangents, layer, 9);
}

TEST_F(OwnParts, layers_whose_numbers_do_not_add_up_are_left_to_the_engine) {
    std::minstd_rand random(13);
    Numbers tooMany;
    tooMany.fill(17, 12, 5, random);
    MadeLayer convolve = madeConvolve(3, 1, 1);
    MadeLayer memory = madeMemory(3, 8, LayerKind::memory);
    for (MadeLayer* layer : {&convolve, &memory}) {
        const long refusedBefore = refusedCalls();
        const auto own = layer->forward(tooMany);
        EXPECT_GT(refusedCalls(), refusedBefore);
        chooseParts(PartImplementation::engine);
        EXPECT_EQ(own, layer->forward(tooMany));
        chooseParts(PartImplementation::ownWhereKnown);
    }
}

TEST_F(OwnParts, numbers_beyond_their_row_are_left_to_the_engine) {
    std::minstd_rand random(17);
    Numbers two;
    two.fill(2, 1, 4, random);
    const float values[] = {1, -1, 1, -1};
    const long refusedBefore = refusedCalls();
    const long takenBefore = takenCalls(EngineLayer::numbers);
    two.io().WriteTimeStepPart(0, 0, 4, values);
    EXPECT_EQ(refusedCalls(), refusedBefore);
    EXPECT_EQ(takenCalls(EngineLayer::numbers), takenBefore + 1);
    two.io().WriteTimeStepPart(0, 2, 4, values);
    EXPECT_EQ(refusedCalls(), refusedBefore + 1);
    EXPECT_EQ(takenCalls(EngineLayer::numbers), takenBefore + 1);
    const auto all = two.all();
    EXPECT_EQ(std::vector<int>(all.begin(), all.begin() + 6),
              (std::vector{127, -127, 127, -127, 127, -127}));
}

#if defined(__x86_64__) && defined(__GLIBCXX__)
TEST(KnownEngine, is_the_one_that_debian_12_has) {
    if (std::strcmp(::tesseract::TessBaseAPI::Version(), "5.3.0") != 0) {
        GTEST_SKIP() << "engine " << ::tesseract::TessBaseAPI::Version()
                     << " does all of its work itself";
    }
    EXPECT_TRUE(usesOwnParts());
    chooseParts(PartImplementation::engine);
    EXPECT_FALSE(usesOwnParts());
    chooseParts(PartImplementation::ownWhereKnown);
}
#endif

TEST_F(OwnParts, take_every_layer_of_the_installed_languages) {
    const auto languages = installedLanguages();
    ASSERT_FALSE(languages.empty());
    for (const std::string& language : languages) {
        auto reader = LineReader::create({language});
        ASSERT_TRUE(reader) << reader.error().sentence;
        const long refusedBefore = refusedCalls();
        const auto takenBefore = takenByEach();
        reader.value()->read(strokes(600, 1));
        EXPECT_EQ(refusedCalls(), refusedBefore) << language;
        const auto taken = takenByEach();
        for (std::size_t layer = 0; layer < taken.size(); ++layer) {
            EXPECT_GT(taken[layer], takenBefore[layer]) << language << ", layer " << layer;
        }
    }
}

TEST_F(OwnParts, stay_chosen_or_not_when_an_engine_is_loaded) {
    chooseParts(PartImplementation::engine);
    const auto reader = LineReader::create({"eng"});
    ASSERT_TRUE(reader) << reader.error().sentence;
    EXPECT_FALSE(usesOwnParts());
}

TEST_P(EngineLayers, own_layers_read_what_the_engines_own_read) {
    auto reader = ScreenTextReader::create({"deu", "eng"}, CrewSize::one);
    ASSERT_TRUE(reader) << reader.error().sentence;
    for (const char* name : {"table01", "prose01", "accent01", "mixed01"}) {
        const auto picture =
            bench::loadPicture(LUMAFRAME_TEST_DATA "/ocr/" + std::string(name) + ".png");
        ASSERT_TRUE(picture) << name;
        const auto [own, engines] =
            readByBoth([&] { return candidatesOf(*reader.value(), picture.value()); });
        EXPECT_EQ(own, engines) << name;
        EXPECT_FALSE(own.empty()) << name;
    }
}

TEST_P(EngineLayers, own_layers_are_as_sure_as_the_engines_own) {
    auto reader = LineReader::create({"eng"});
    ASSERT_TRUE(reader) << reader.error().sentence;
    for (unsigned seed = 0; seed < 40; ++seed) {
        const InkPlane picture = strokes(60 + 23 * static_cast<int>(seed), seed);
        const auto [own, engines] =
            readByBoth([&] { return confidencesOf(*reader.value(), picture); });
        EXPECT_EQ(own, engines) << seed;
    }
}

}  // namespace platform::tesseract
