#include "capture/captured_image.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "doubles/fake_image_encoder.h"

namespace {

class CapturedImageTest : public testing::Test {
  protected:
    doubles::FakeImageEncoder encoder;
    std::shared_ptr<const std::vector<std::uint8_t>> bytes =
        std::make_shared<const std::vector<std::uint8_t>>(4 * 2 * 4);
    std::weak_ptr<const void> pixels = bytes;

    std::unique_ptr<capture::CapturedImage> captured() {
        const std::uint8_t* first = bytes->data();
        return std::make_unique<capture::CapturedImage>(
            base::Image(4, 2, 16, first, base::AlphaChannel::none, std::move(bytes)),
            base::Size{2, 1}, encoder);
    }
};

TEST_F(CapturedImageTest, is_encoded_with_its_size_in_points) {
    const auto image = captured();
    EXPECT_EQ(image->size(), (base::Size{2, 1}));
    const auto* png = image->pngRepresentation();
    ASSERT_NE(png, nullptr);
    EXPECT_EQ(std::string(png->begin(), png->end()), "PNG 4x2 2.0x1.0");
}

TEST_F(CapturedImageTest, is_encoded_when_first_asked_for_and_only_once) {
    const auto image = captured();
    EXPECT_EQ(encoder.encodeCount, 0);
    const auto* first = image->pngRepresentation();
    EXPECT_EQ(image->pngRepresentation(), first);
    EXPECT_EQ(encoder.encodeCount, 1);
}

TEST_F(CapturedImageTest, lets_the_pixels_go_as_soon_as_it_is_encoded) {
    const auto image = captured();
    EXPECT_FALSE(pixels.expired());
    image->pngRepresentation();
    EXPECT_TRUE(pixels.expired());
}

TEST_F(CapturedImageTest, shows_its_pixels_until_it_is_encoded) {
    const auto image = captured();
    EXPECT_EQ(image->pixels().width(), 4);
    EXPECT_EQ(image->pixels().height(), 2);
    image->pngRepresentation();
    EXPECT_TRUE(image->pixels().isEmpty());
}

TEST_F(CapturedImageTest, an_encoding_that_failed_is_not_tried_again) {
    encoder.error = base::Error{base::ErrorKind::failed, "No."};
    const auto image = captured();
    EXPECT_EQ(image->pngRepresentation(), nullptr);
    EXPECT_EQ(image->pngRepresentation(), nullptr);
    EXPECT_EQ(encoder.encodeCount, 1);
}

}  // namespace
