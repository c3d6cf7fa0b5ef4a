#include "platform/tesseract/screen_text_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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

}  // namespace platform::tesseract
