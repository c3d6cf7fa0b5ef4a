#include "base/image.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

using base::AlphaChannel;
using base::Image;

TEST(Image, an_image_without_pixels_is_empty) {
    EXPECT_TRUE(Image().isEmpty());
    EXPECT_FALSE(Image::fromPixels(1, 1, {1, 2, 3, 4}, AlphaChannel::none).isEmpty());
}

TEST(Image, rows_are_counted_from_the_top) {
    const Image image =
        Image::fromPixels(1, 2, {1, 2, 3, 4, 5, 6, 7, 8}, AlphaChannel::premultiplied);
    EXPECT_EQ(image.width(), 1);
    EXPECT_EQ(image.height(), 2);
    EXPECT_EQ(image.bytesPerRow(), 4U);
    EXPECT_EQ(image.row(0)[0], 1);
    EXPECT_EQ(image.row(1)[3], 8);
    EXPECT_EQ(image.alphaChannel(), AlphaChannel::premultiplied);
    EXPECT_EQ(image.colorSpace(), nullptr);
}

TEST(Image, rows_may_be_further_apart_than_they_are_long) {
    const auto owner = std::make_shared<const std::vector<std::uint8_t>>(
        std::vector<std::uint8_t>{1, 2, 3, 4, 0, 0, 5, 6, 7, 8, 0, 0});
    const Image image(1, 2, 6, owner->data(), AlphaChannel::none, owner);
    EXPECT_EQ(image.row(1)[0], 5);
}

TEST(Image, copies_share_the_pixels_and_the_last_one_lets_them_go) {
    auto owner = std::make_shared<const std::vector<std::uint8_t>>(4);
    const std::weak_ptr<const void> watched = owner;
    const std::uint8_t* pixels = owner->data();
    auto first = std::make_unique<Image>(1, 1, 4, pixels, AlphaChannel::none, std::move(owner));
    auto second = std::make_unique<Image>(*first);
    EXPECT_EQ(second->row(0), first->row(0));
    first.reset();
    EXPECT_FALSE(watched.expired());
    second.reset();
    EXPECT_TRUE(watched.expired());
}
