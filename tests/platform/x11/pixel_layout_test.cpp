#include "platform/x11/pixel_layout.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <vector>

namespace {

using platform::x11::PixelLayout;
using ByteOrder = PixelLayout::ByteOrder;
using Pixel = std::array<std::uint8_t, 4>;

Pixel convert(const PixelLayout& layout, const std::vector<std::uint8_t>& source) {
    Pixel pixel{};
    layout.convertRow(source.data(), pixel.data(), 1);
    return pixel;
}

constexpr PixelLayout::Masks ordinary{0xff0000, 0xff00, 0xff};

TEST(PixelLayout, is_direct_only_where_the_bytes_are_blue_green_red) {
    EXPECT_TRUE(PixelLayout({24, 32, 32, ByteOrder::leastSignificantFirst}, ordinary).isDirect());
    EXPECT_TRUE(PixelLayout({32, 32, 32, ByteOrder::leastSignificantFirst}, ordinary).isDirect());
    EXPECT_FALSE(PixelLayout({24, 32, 32, ByteOrder::mostSignificantFirst}, ordinary).isDirect());
    EXPECT_FALSE(PixelLayout({24, 24, 32, ByteOrder::leastSignificantFirst}, ordinary).isDirect());
    EXPECT_FALSE(
        PixelLayout({24, 32, 32, ByteOrder::leastSignificantFirst}, {0xff, 0xff00, 0xff0000})
            .isDirect());
}

TEST(PixelLayout, makes_pixels_without_alpha_opaque) {
    const PixelLayout layout({24, 32, 32, ByteOrder::leastSignificantFirst}, ordinary);
    EXPECT_EQ(convert(layout, {1, 2, 3, 0}), (Pixel{1, 2, 3, 255}));
}

TEST(PixelLayout, keeps_the_alpha_of_a_32_bit_visual) {
    const PixelLayout layout({32, 32, 32, ByteOrder::leastSignificantFirst}, ordinary);
    EXPECT_EQ(convert(layout, {1, 2, 3, 4}), (Pixel{1, 2, 3, 4}));
    const PixelLayout reversed({32, 32, 32, ByteOrder::mostSignificantFirst}, ordinary);
    EXPECT_EQ(convert(reversed, {4, 3, 2, 1}), (Pixel{1, 2, 3, 4}));
}

TEST(PixelLayout, takes_the_upper_eight_of_ten_bits) {
    const PixelLayout layout({30, 32, 32, ByteOrder::leastSignificantFirst},
                             {0x3ff00000, 0xffc00, 0x3ff});
    // Red 0x3ff, green 0x204, blue 0x003.
    const std::uint32_t pixel = 0x3ffU << 20U | 0x204U << 10U | 0x003U;
    EXPECT_EQ(
        convert(layout,
                {static_cast<std::uint8_t>(pixel), static_cast<std::uint8_t>(pixel >> 8U),
                 static_cast<std::uint8_t>(pixel >> 16U), static_cast<std::uint8_t>(pixel >> 24U)}),
        (Pixel{0x00, 0x81, 0xff, 255}));
}

TEST(PixelLayout, stretches_five_and_six_bits_to_eight) {
    const PixelLayout layout({16, 16, 32, ByteOrder::leastSignificantFirst}, {0xf800, 0x7e0, 0x1f});
    EXPECT_EQ(convert(layout, {0xff, 0xff}), (Pixel{255, 255, 255, 255}));
    EXPECT_EQ(convert(layout, {0x00, 0x00}), (Pixel{0, 0, 0, 255}));
    // Red 16 of 31, green 32 of 63, blue 8 of 31.
    const unsigned pixel = 16U << 11U | 32U << 5U | 8U;
    EXPECT_EQ(
        convert(layout, {static_cast<std::uint8_t>(pixel), static_cast<std::uint8_t>(pixel >> 8U)}),
        (Pixel{66, 130, 132, 255}));
}

TEST(PixelLayout, reads_three_bytes_a_pixel_in_either_order) {
    const PixelLayout low({24, 24, 32, ByteOrder::leastSignificantFirst}, ordinary);
    EXPECT_EQ(convert(low, {1, 2, 3}), (Pixel{1, 2, 3, 255}));
    const PixelLayout high({24, 24, 32, ByteOrder::mostSignificantFirst}, ordinary);
    EXPECT_EQ(convert(high, {3, 2, 1}), (Pixel{1, 2, 3, 255}));
}

TEST(PixelLayout, pads_rows_as_the_server_does) {
    const PixelLayout sixteen({16, 16, 32, ByteOrder::leastSignificantFirst},
                              {0xf800, 0x7e0, 0x1f});
    EXPECT_EQ(sixteen.bytesPerRow(1), 4U);
    EXPECT_EQ(sixteen.bytesPerRow(3), 8U);
    EXPECT_EQ(PixelLayout({24, 24, 32, ByteOrder::leastSignificantFirst}, ordinary).bytesPerRow(3),
              12U);
    EXPECT_EQ(PixelLayout({24, 32, 32, ByteOrder::leastSignificantFirst}, ordinary).bytesPerRow(3),
              12U);
}

}  // namespace
