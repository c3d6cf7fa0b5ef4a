#include "platform/tesseract/connected_components.h"

#include <gtest/gtest.h>

#include "drawn_page.h"

namespace platform::tesseract {

TEST(ConnectedComponents, an_empty_mask_has_none) {
    EXPECT_TRUE(ConnectedComponents(Mask(4, 4)).all().empty());
}

TEST(ConnectedComponents, pixels_that_touch_at_a_corner_are_one) {
    const ConnectedComponents components(maskOf({"#..", ".#.", "..#"}));
    ASSERT_EQ(components.all().size(), 1U);
    EXPECT_EQ(components.all()[0].box, (Box{0, 0, 3, 3}));
    EXPECT_EQ(components.all()[0].pixelCount, 3);
}

TEST(ConnectedComponents, arms_that_meet_below_are_one) {
    const ConnectedComponents components(maskOf({"#...#", "#...#", "#####"}));
    ASSERT_EQ(components.all().size(), 1U);
    EXPECT_EQ(components.all()[0].pixelCount, 9);
}

TEST(ConnectedComponents, parts_with_a_gap_between_them_are_several) {
    const ConnectedComponents components(maskOf({"##.#", "....", "##.."}));
    EXPECT_EQ(components.all().size(), 3U);
}

TEST(ConnectedComponents, the_runs_of_a_component_are_its_pixels_from_the_top) {
    const ConnectedComponents components(maskOf({".##.#", "....#", "##..#"}));
    for (const Component& component : components.all()) {
        int pixels = 0;
        int lastRow = -1;
        for (const auto* run = components.runsBegin(component);
             run != components.runsEnd(component); ++run) {
            EXPECT_GE(run->y, lastRow);
            lastRow = run->y;
            pixels += run->right - run->left;
        }
        EXPECT_EQ(pixels, component.pixelCount);
    }
}

}  // namespace platform::tesseract
