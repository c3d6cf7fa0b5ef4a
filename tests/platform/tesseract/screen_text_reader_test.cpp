#include "platform/tesseract/screen_text_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "drawn_page.h"

namespace platform::tesseract {

namespace {

std::unique_ptr<ScreenTextReader> englishReader() {
    auto reader = ScreenTextReader::create({"eng"});
    EXPECT_TRUE(reader) << reader.error().sentence;
    return reader ? std::move(reader.value()) : nullptr;
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
