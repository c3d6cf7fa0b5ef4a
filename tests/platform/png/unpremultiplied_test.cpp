#include <gtest/gtest.h>

#include "platform/png/pixel_rows.h"

TEST(Unpremultiplied, every_color_up_to_its_alpha_is_rounded_to_the_nearest) {
    for (int alpha = 1; alpha < 256; ++alpha) {
        for (int color = 0; color <= alpha; ++color) {
            // floor(color * 255 / alpha + 1/2) in whole numbers.
            const int expected = (2 * color * 255 + alpha) / (2 * alpha);
            ASSERT_EQ(platform::png::unpremultiplied(static_cast<std::uint8_t>(color),
                                                     static_cast<std::uint8_t>(alpha)),
                      expected)
                << color << " of " << alpha;
        }
    }
}

TEST(Unpremultiplied, a_color_above_its_alpha_is_full) {
    for (int alpha = 1; alpha < 255; ++alpha) {
        for (int color = alpha + 1; color < 256; ++color) {
            ASSERT_EQ(platform::png::unpremultiplied(static_cast<std::uint8_t>(color),
                                                     static_cast<std::uint8_t>(alpha)),
                      255);
        }
    }
}

TEST(Unpremultiplied, what_is_wholly_transparent_has_no_color) {
    EXPECT_EQ(platform::png::unpremultiplied(0, 0), 0);
    EXPECT_EQ(platform::png::unpremultiplied(200, 0), 0);
}
