#include "platform/tesseract/background_model.h"

#include <gtest/gtest.h>

#include "drawn_page.h"
#include "platform/tesseract/ink_map.h"

namespace platform::tesseract {

namespace {
constexpr Color white{255, 255, 255};
constexpr Color black{0, 0, 0};
constexpr Color blue{30, 80, 200};
}  // namespace

TEST(BackgroundModel, a_stroke_takes_the_color_of_the_surface_around_it) {
    ColorPlane page(40, 30, white);
    fill(page, {18, 8, 21, 22}, black);
    const BackgroundModel background(page);
    EXPECT_EQ(background.colors().at(19, 15), white);
    EXPECT_FALSE(background.isSurface(19, 15));
}

TEST(BackgroundModel, a_button_is_a_surface_of_its_own) {
    ColorPlane page(80, 60, white);
    fill(page, {20, 20, 60, 40}, blue);
    const BackgroundModel background(page);
    EXPECT_EQ(background.colors().at(40, 30), blue);
    EXPECT_TRUE(background.isSurface(40, 30));
}

TEST(BackgroundModel, the_broad_stroke_of_a_letter_is_no_surface) {
    ColorPlane page(120, 60, white);
    fill(page, {40, 20, 52, 36}, black);
    const BackgroundModel background(page);
    EXPECT_EQ(background.colors().at(45, 28), white);
}

TEST(BackgroundModel, a_stroke_at_the_left_edge_takes_the_color_from_its_right) {
    ColorPlane page(60, 60, white);
    fill(page, {0, 0, 60, 20}, blue);
    fill(page, {0, 20, 3, 60}, black);
    const BackgroundModel background(page);
    EXPECT_FALSE(background.isSurface(0, 50));
    for (int x = 0; x < 3; ++x) {
        EXPECT_EQ(background.colors().at(x, 50), white) << x;
        EXPECT_EQ(background.distances(50)[x], 2 * (3 - x)) << x;
    }
}

TEST(BackgroundModel, a_stroke_at_the_upper_edge_takes_the_color_from_below) {
    ColorPlane page(60, 60, white);
    fill(page, {0, 0, 20, 60}, blue);
    fill(page, {20, 0, 60, 3}, black);
    const BackgroundModel background(page);
    EXPECT_FALSE(background.isSurface(50, 0));
    for (int y = 0; y < 3; ++y) {
        EXPECT_EQ(background.colors().at(50, y), white) << y;
        EXPECT_EQ(background.distances(y)[50], 3 * (3 - y)) << y;
    }
}

TEST(BackgroundModel, a_surface_grows_into_what_is_open_below_or_to_the_right) {
    ColorPlane page(60, 60, white);
    fill(page, {10, 0, 13, 12}, black);
    fill(page, {18, 0, 21, 12}, black);
    fill(page, {0, 30, 12, 33}, black);
    fill(page, {0, 36, 12, 39}, black);
    const BackgroundModel background(page);
    EXPECT_TRUE(background.isSurface(15, 0));
    EXPECT_TRUE(background.isSurface(0, 34));
}

TEST(BackgroundModel, a_gradient_is_followed) {
    ColorPlane page(60, 40);
    for (int y = 0; y < 40; ++y) {
        fill(page, {0, y, 60, y + 1}, {static_cast<std::uint8_t>(100 + y), 50, 50});
    }
    fill(page, {30, 10, 33, 30}, white);
    const BackgroundModel background(page);
    EXPECT_LE(distance(background.colors().at(31, 12), Color{112, 50, 50}), 2);
    EXPECT_LE(distance(background.colors().at(31, 27), Color{127, 50, 50}), 2);
}

TEST(BackgroundModel, a_picture_too_small_for_a_surface_has_the_commonest_color) {
    ColorPlane page(3, 3, white);
    page.at(1, 1) = black;
    EXPECT_EQ(BackgroundModel(page).colors().at(1, 1), white);
}

TEST(InkMap, light_text_on_dark_weighs_as_much_as_dark_text_on_light) {
    ColorPlane page(80, 40, white);
    fill(page, {40, 0, 80, 40}, black);
    fill(page, {15, 10, 18, 30}, black);
    fill(page, {60, 10, 63, 30}, white);
    const InkPlane ink = measureInk(page, BackgroundModel(page));
    EXPECT_EQ(ink.at(16, 20), 255);
    EXPECT_EQ(ink.at(61, 20), 255);
    EXPECT_EQ(ink.at(5, 5), 0);
}

TEST(InkMap, the_edge_between_two_surfaces_is_no_ink) {
    ColorPlane page(80, 40, white);
    fill(page, {40, 0, 80, 40}, black);
    fill(page, {39, 0, 40, 40}, {128, 128, 128});
    const InkPlane ink = measureInk(page, BackgroundModel(page));
    for (int x = 0; x < 80; ++x) {
        EXPECT_EQ(ink.at(x, 20), 0) << x;
    }
}

TEST(InkMap, a_pale_sign_beside_a_strong_one_is_ink) {
    InkPlane ink(48, 24);
    ink.at(5, 5) = 255;
    ink.at(20, 5) = 60;
    EXPECT_EQ(binarize(ink).at(20, 5), 1);
}

TEST(InkMap, the_faint_edge_of_a_stroke_is_no_ink) {
    InkPlane ink(48, 24);
    ink.at(5, 5) = 255;
    ink.at(6, 5) = 60;
    const Mask mask = binarize(ink);
    EXPECT_EQ(mask.at(5, 5), 1);
    EXPECT_EQ(mask.at(6, 5), 0);
}

TEST(InkMap, noise_beside_strong_ink_is_none) {
    InkPlane ink(200, 24);
    ink.at(5, 5) = 255;
    ink.at(20, 5) = 25;
    ink.at(150, 5) = 25;
    const Mask mask = binarize(ink);
    EXPECT_EQ(mask.at(20, 5), 0);
    EXPECT_EQ(mask.at(150, 5), 1);
}

}  // namespace platform::tesseract
