#include "platform/tesseract/figures.h"

#include <gtest/gtest.h>

namespace platform::tesseract {

TEST(Figures, letters_among_figures_are_figures) {
    EXPECT_EQ(withFigures("1O4 and 20O"), "104 and 200");
    EXPECT_EQ(withFigures("2l3,5I7"), "213,517");
    EXPECT_EQ(withFigures("O.00072"), "0.00072");
    EXPECT_EQ(withFigures("(OxO1F4)"), "(0x01F4)");
}

TEST(Figures, names_keep_their_letters) {
    for (const char* text : {"gcc -O2", "H2O", "l1 = O0", "10l", "Oxford", "il1", "to. 5", "4Ohm",
                             "naïve2O", "a_1O"}) {
        EXPECT_EQ(withFigures(text), text);
    }
}

}  // namespace platform::tesseract
