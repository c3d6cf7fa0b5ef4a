#include "platform/tesseract/line_crew.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <mutex>
#include <set>
#include <thread>

#include "meeting.h"
#include "picture_set.h"
#include "platform/helper/confinement.h"
#include "platform/tesseract/reading_time.h"
#include "platform/tesseract/screen_text_reader.h"

namespace platform::tesseract {

namespace {

constexpr std::chrono::minutes longLimit{10};

std::unique_ptr<LineCrew> crewOf(CrewSize size) {
    auto crew = LineCrew::create({"eng"}, size);
    EXPECT_TRUE(crew) << crew.error().sentence;
    return crew ? std::move(crew.value()) : nullptr;
}

/// Tells which line it was.
LineReading numbered(LineReader&, std::size_t index) {
    return {std::to_string(index), 0, {}, {}};
}

std::vector<std::string> textsOf(const std::vector<LineReading>& readings) {
    std::vector<std::string> texts;
    for (const LineReading& reading : readings) {
        texts.push_back(reading.text);
    }
    return texts;
}

/// A picture of the set several times, one below the other.
base::Image stacked(const std::string& name, int times) {
    const auto picture = bench::loadPicture(LUMAFRAME_TEST_DATA "/ocr/" + name + ".png");
    EXPECT_TRUE(picture) << name;
    if (!picture) {
        return {};
    }
    const base::Image& one = picture.value();
    std::vector<std::uint8_t> pixels;
    for (int row = 0; row < one.height() * times; ++row) {
        const std::uint8_t* from = one.row(row % one.height());
        pixels.insert(pixels.end(), from, from + 4 * static_cast<std::ptrdiff_t>(one.width()));
    }
    return base::Image::fromPixels(one.width(), one.height() * times, std::move(pixels),
                                   base::AlphaChannel::none);
}

/// What a reader made of a picture, with all candidates.
std::vector<std::vector<std::string>> candidatesOf(ScreenTextReader& reader,
                                                   const base::Image& picture) {
    std::vector<std::vector<std::string>> all;
    // What counts is what is read, also where sanitizers slow it down.
    const auto observations = reader.read(picture, std::chrono::minutes(10));
    EXPECT_TRUE(observations);
    if (observations) {
        for (const capture::TextObservation& observation : observations.value()) {
            all.push_back(observation.candidates);
        }
    }
    return all;
}

}  // namespace

TEST(LineCrew, readings_come_in_the_order_of_the_lines_whatever_their_lengths) {
    const auto crew = crewOf(CrewSize::two);
    ASSERT_NE(crew, nullptr);
    const auto readings = crew->readAll({5, 900, 20, 900, 1}, numbered, longLimit);
    ASSERT_TRUE(readings);
    EXPECT_THAT(textsOf(readings.value()), testing::ElementsAre("0", "1", "2", "3", "4"));
}

TEST(LineCrew, a_short_page_loads_no_second_engine_and_a_long_one_does) {
    const auto crew = crewOf(CrewSize::two);
    ASSERT_NE(crew, nullptr);
    ASSERT_TRUE(crew->readAll({LineCrew::worthSecondEngine / 3, 10}, numbered, longLimit));
    EXPECT_FALSE(crew->isComplete());
    if (std::thread::hardware_concurrency() < 2) {
        GTEST_SKIP() << "one processor";
    }
    Meeting meeting;
    const auto readTogether = [&](LineReader& reader, std::size_t index) {
        EXPECT_TRUE(meeting.await(static_cast<int>(index)));
        return numbered(reader, index);
    };
    ASSERT_TRUE(crew->readAll({LineCrew::worthSecondEngine, 10}, readTogether, longLimit));
    EXPECT_TRUE(crew->isComplete());
}

TEST(LineCrew, once_the_second_engine_is_loaded_short_pages_are_read_by_two) {
    const auto crew = crewOf(CrewSize::two);
    ASSERT_NE(crew, nullptr);
    if (std::thread::hardware_concurrency() < 2) {
        GTEST_SKIP() << "one processor";
    }
    crew->complete();
    EXPECT_TRUE(crew->isComplete());
    Meeting meeting;
    std::set<LineReader*> readers;
    std::mutex mutex;
    const auto readTogether = [&](LineReader& reader, std::size_t index) {
        EXPECT_TRUE(meeting.await(static_cast<int>(index)));
        const std::scoped_lock lock(mutex);
        readers.insert(&reader);
        return numbered(reader, index);
    };
    ASSERT_TRUE(crew->readAll({2, 1}, readTogether, longLimit));
    EXPECT_EQ(readers.size(), 2U);
}

TEST(LineCrew, a_crew_of_one_stays_alone) {
    const auto crew = crewOf(CrewSize::one);
    ASSERT_NE(crew, nullptr);
    crew->complete();
    ASSERT_TRUE(crew->readAll({10 * LineCrew::worthSecondEngine, 10}, numbered, longLimit));
    EXPECT_FALSE(crew->isComplete());
}

TEST(LineCrew, a_page_that_is_foreseen_to_take_too_long_is_an_error_before_it_is_read) {
    const auto crew = crewOf(CrewSize::one);
    ASSERT_NE(crew, nullptr);
    std::size_t count = 0;
    const auto readings = crew->readAll(
        std::vector<double>(1000, 10),
        [&](LineReader& reader, std::size_t index) {
            ++count;
            return numbered(reader, index);
        },
        std::chrono::milliseconds(0));
    ASSERT_FALSE(readings);
    EXPECT_THAT(readings.error().sentence, testing::HasSubstr("more text than"));
    EXPECT_LT(count, 3U);
}

TEST(LineCrew, one_slow_line_gives_no_page_up) {
    const auto crew = crewOf(CrewSize::one);
    ASSERT_NE(crew, nullptr);
    // At the first line's pace all of them would take more than a minute.
    const std::vector<double> lengths(100'000, 10);
    const auto readings = crew->readAll(
        lengths,
        [](LineReader& reader, std::size_t index) {
            const auto start = std::chrono::steady_clock::now();
            while (index == 0 &&
                   std::chrono::steady_clock::now() - start < std::chrono::milliseconds(1)) {
            }
            return numbered(reader, index);
        },
        std::chrono::minutes(1));
    ASSERT_TRUE(readings) << readings.error().sentence;
    EXPECT_EQ(readings.value().size(), lengths.size());
}

TEST(LineCrew, a_second_in_which_other_work_comes_first_gives_no_page_up) {
    const auto crew = crewOf(CrewSize::one);
    ASSERT_NE(crew, nullptr);
    const auto readings = crew->readAll(
        std::vector<double>(1000, 10),
        [](LineReader& reader, std::size_t index) {
            const auto start = std::chrono::steady_clock::now();
            while (index == 0 &&
                   std::chrono::steady_clock::now() - start < std::chrono::seconds(1)) {
            }
            return numbered(reader, index);
        },
        std::chrono::milliseconds(4500));
    ASSERT_TRUE(readings) << readings.error().sentence;
}

/// Leaves with 0 when all went well.
[[noreturn]] void loadAnotherWhenConfined() {
    const auto reader = LineReader::create({"deu", "eng"});
    constexpr unsigned long long memoryGrowth = 1ULL << 30U;
    if (!reader || !platform::helper::confineToReading() ||
        !platform::helper::confineToComputing(memoryGrowth)) {
        std::_Exit(2);
    }
    const bool opensFiles = ::open("/dev/null", O_RDONLY) >= 0;
    const auto another = reader.value()->another();
    std::_Exit(another == nullptr || opensFiles ? 1 : 0);
}

TEST(LineReader, another_one_is_loaded_where_no_file_can_be_opened_any_more) {
    EXPECT_EXIT(loadAnotherWhenConfined(), testing::ExitedWithCode(0), "");
}

TEST(ReadingTime, a_dense_page_of_any_size_is_given_up_before_the_program_stops_waiting) {
    for (const long pixelCount : {400L, 300'000L, 3'000'000L, ScreenTextReader::largestPicture}) {
        const auto waiting = WaitingTime{}.forPixels(pixelCount);
        EXPECT_LT(longestReading(pixelCount), waiting - std::chrono::seconds(1)) << pixelCount;
        EXPECT_GT(longestReading(pixelCount), waiting / 2) << pixelCount;
    }
    EXPECT_EQ(WaitingTime{}.forPixels(2'000'000), std::chrono::seconds(13));
    EXPECT_EQ(WaitingTime{}.forPixels(ScreenTextReader::largestPicture), std::chrono::minutes(1));
}

TEST(ScreenTextReader, two_threads_read_what_one_reads) {
    auto one = ScreenTextReader::create({"deu", "eng"}, CrewSize::one);
    auto two = ScreenTextReader::create({"deu", "eng"}, CrewSize::two);
    ASSERT_TRUE(one) << one.error().sentence;
    ASSERT_TRUE(two) << two.error().sentence;
    // The first one is long enough for the second engine, which then reads all others, too.
    for (const auto& picture : {stacked("prose01", 4), stacked("accent03", 1), stacked("code03", 1),
                                stacked("word01", 1)}) {
        const auto expected = candidatesOf(*one.value(), picture);
        EXPECT_FALSE(expected.empty());
        EXPECT_EQ(candidatesOf(*two.value(), picture), expected);
    }
    EXPECT_FALSE(one.value()->usesTwoThreads());
    EXPECT_EQ(two.value()->usesTwoThreads(), std::thread::hardware_concurrency() > 1);
}

TEST(ScreenTextReader, what_the_engine_read_otherwise_follows_as_candidates_each_once) {
    auto reader = ScreenTextReader::create({"eng"});
    ASSERT_TRUE(reader) << reader.error().sentence;
    std::size_t withAlternatives = 0;
    for (const char* name : {"xterm01", "code02", "table01"}) {
        for (const auto& candidates : candidatesOf(*reader.value(), stacked(name, 1))) {
            ASSERT_FALSE(candidates.empty());
            EXPECT_EQ(std::set<std::string>(candidates.begin(), candidates.end()).size(),
                      candidates.size());
            EXPECT_THAT(candidates, testing::Each(testing::Ne("")));
            withAlternatives += candidates.size() > 1 ? 1 : 0;
        }
    }
    EXPECT_GT(withAlternatives, 3U);
}

}  // namespace platform::tesseract
