#include "platform/tesseract/screen_text_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <fstream>

#include "drawn_page.h"
#include "picture_set.h"
#include "platform/tesseract/reading_time.h"

namespace platform::tesseract {

namespace {

std::unique_ptr<ScreenTextReader> englishReader() {
    auto reader = ScreenTextReader::create({"eng"});
    EXPECT_TRUE(reader) << reader.error().sentence;
    return reader ? std::move(reader.value()) : nullptr;
}

/// HILT, so many pixels high; strokes as wide as a sixth of that.
void drawHilt(ColorPlane& page, int left, int top, int height) {
    const int stroke = height / 6;
    const int width = height * 2 / 3;
    const auto upright = [&](int x) { fill(page, {x, top, x + stroke, top + height}, {}); };
    const auto lying = [&](int x, int y) { fill(page, {x, y, x + width, y + stroke}, {}); };
    const int step = width + 2 * stroke;
    upright(left);
    upright(left + width - stroke);
    lying(left, top + (height - stroke) / 2);
    upright(left + step);
    upright(left + step + 3 * stroke);
    lying(left + step + 3 * stroke, top + height - stroke);
    lying(left + 2 * step + 3 * stroke, top);
    upright(left + 2 * step + 3 * stroke + (width - stroke) / 2);
}

base::Image tiled(const base::Image& tile, int width, int height) {
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(width) *
                                     static_cast<std::size_t>(height) * 4);
    std::uint8_t* to = pixels.data();
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; x += tile.width()) {
            const int count = 4 * std::min(tile.width(), width - x);
            to = std::copy_n(tile.row(y % tile.height()), count, to);
        }
    }
    return base::Image::fromPixels(width, height, std::move(pixels), base::AlphaChannel::none);
}

void forgetMostMemory() {
    std::ofstream("/proc/self/clear_refs") << 5;
}

/// That this process ever had since it was forgotten, in KiB.
long mostMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == "VmHWM:") {
            long kibibytes = 0;
            status >> kibibytes;
            return kibibytes;
        }
    }
    ADD_FAILURE() << "no VmHWM";
    return 0;
}

}  // namespace

TEST(ScreenTextReader, missing_data_are_an_error_that_names_the_package) {
    const auto reader = ScreenTextReader::create({"eng", "xyz_abc"});
    ASSERT_FALSE(reader);
    EXPECT_EQ(reader.error().kind, base::ErrorKind::unavailable);
    EXPECT_THAT(reader.error().sentence, testing::HasSubstr("tesseract-ocr-xyz-abc"));
}

TEST(ScreenTextReader, no_language_is_an_error) {
    EXPECT_FALSE(ScreenTextReader::create({}));
}

TEST(ScreenTextReader, a_single_color_has_no_text) {
    const auto reader = englishReader();
    ASSERT_NE(reader, nullptr);
    const auto read = reader->read(imageOf(ColorPlane(300, 200, {40, 90, 160})));
    ASSERT_TRUE(read);
    EXPECT_TRUE(read.value().empty());
}

TEST(ScreenTextReader, three_pixels_by_three_have_no_text) {
    const auto reader = englishReader();
    ASSERT_NE(reader, nullptr);
    ColorPlane page(3, 3, {255, 255, 255});
    page.at(1, 1) = {0, 0, 0};
    const auto read = reader->read(imageOf(page));
    ASSERT_TRUE(read);
    EXPECT_TRUE(read.value().empty());
}

TEST(ScreenTextReader, an_empty_picture_has_no_text) {
    const auto reader = englishReader();
    ASSERT_NE(reader, nullptr);
    const auto read = reader->read(base::Image());
    ASSERT_TRUE(read);
    EXPECT_TRUE(read.value().empty());
}

TEST(ScreenTextReader, noise_has_no_text_and_ends_soon) {
    const auto reader = englishReader();
    ASSERT_NE(reader, nullptr);
    ColorPlane page(1200, 900, {255, 255, 255});
    std::uint32_t state = 1;
    for (int y = 0; y < page.height(); ++y) {
        for (int x = 0; x < page.width(); ++x) {
            state = state * 1664525 + 1013904223;
            if (state >> 29 == 0) {
                page.at(x, y) = {0, 0, 0};
            }
        }
    }
    const auto started = std::chrono::steady_clock::now();
    const auto read = reader->read(imageOf(page));
    ASSERT_TRUE(read);
    EXPECT_TRUE(read.value().empty());
    EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(20));
}

TEST(ScreenTextReader, letters_of_all_sizes_share_one_limit) {
    const auto reader = englishReader();
    ASSERT_NE(reader, nullptr);
    // Letters that are found once the picture is reduced a second time: nearly all of the time goes
    // before that.
    ColorPlane page(4500, 3000, {255, 255, 255});
    drawHilt(page, 500, 500, 240);
    drawHilt(page, 500, 1500, 240);
    const base::Image image = imageOf(page);
    const std::clock_t started = std::clock();
    const auto all = reader->read(image, std::chrono::minutes(10));
    const std::clock_t ticks = std::clock() - started;
    ASSERT_TRUE(all) << all.error().sentence;
    ASSERT_EQ(all.value().size(), 2U);
    EXPECT_THAT(all.value().front().candidates, testing::Contains("HILT"));
    // Two threads take at least half of their processor time, whatever else goes on.
    const auto some =
        reader->read(image, std::chrono::milliseconds(1000 * ticks / CLOCKS_PER_SEC / 4));
    ASSERT_FALSE(some);
    EXPECT_THAT(some.error().sentence, testing::HasSubstr("more text than"));
}

TEST(ScreenTextReader, the_largest_display_full_of_small_text_is_given_up) {
    const auto reader = englishReader();
    ASSERT_NE(reader, nullptr);
    const auto terminal = bench::loadPicture(LUMAFRAME_TEST_DATA "/ocr/xterm01.png");
    ASSERT_TRUE(terminal);
    constexpr int side = 8192;
    static_assert(long{side} * side == ScreenTextReader::largestPicture);
    const base::Image display = tiled(terminal.value(), side, side);
    forgetMostMemory();
    const long before = mostMemory();
    // Processor time, which is the same whatever else goes on, and more than what passes.
    const std::clock_t started = std::clock();
    // So that only the analysis takes its time; the lines have a limit in any case.
    const auto read = reader->read(display, std::chrono::milliseconds(1));
    ASSERT_FALSE(read);
    EXPECT_THAT(read.error().sentence, testing::HasSubstr("more text than"));
    EXPECT_LT(std::chrono::seconds((std::clock() - started) / CLOCKS_PER_SEC),
              WaitingTime{}.longest);
    constexpr long mebibyte = 1024;
    EXPECT_LT(mostMemory() - before, 1536 * mebibyte);
}

TEST(ScreenTextReader, a_picture_larger_than_its_bound_is_an_error) {
    const auto reader = englishReader();
    ASSERT_NE(reader, nullptr);
    // Never read: only its size is looked at.
    const std::uint8_t pixel[4] = {};
    const base::Image image(100000, 100000, 4, pixel, base::AlphaChannel::none, nullptr);
    const auto read = reader->read(image);
    ASSERT_FALSE(read);
    EXPECT_FALSE(read.error().sentence.empty());
}

}  // namespace platform::tesseract
