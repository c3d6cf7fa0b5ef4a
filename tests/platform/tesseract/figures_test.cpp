#include "platform/tesseract/figures.h"

#include <gtest/gtest.h>

namespace platform::tesseract {

TEST(Figures, letters_among_figures_are_figures) {
    EXPECT_EQ(withFigures("1O4 and 20O"), "104 and 200");
    EXPECT_EQ(withFigures("2l3,5I7"), "213,517");
    EXPECT_EQ(withFigures("O.00072"), "0.00072");
    EXPECT_EQ(withFigures("(OxO1F4)"), "(0x01F4)");
}

TEST(Figures, long_hexadecimal_numbers_have_zeros) {
    EXPECT_EQ(withFigures("@cc175b9c@f1b6a831c399e26977 a.out"),
              "0cc175b9c0f1b6a831c399e26977 a.out");
    EXPECT_EQ(withFigures("sha: QbicaO68ffad22"), "sha: QbicaO68ffad22");
    EXPECT_EQ(withFigures("(9C4DQ1E83F7O)"), "(9C4D01E83F70)");
}

TEST(Figures, at_signs_and_words_that_are_no_long_numbers_stay) {
    for (const char* text : {"abcdef@decade", "fed42@cafe.de", "e2024@cafe.eu",
                             "mail2000@abcdefgh1234", "1234567890@1234", "AbCdO1234567",
                             "a1b2c3d4e5@naïve", "a1b2c3d4@cafe.de", "a1b2c3d4e5f6@face.eu."}) {
        EXPECT_EQ(withFigures(text), text);
    }
}

TEST(Figures, names_keep_their_letters) {
    for (const char* text : {"gcc -O2", "H2O", "l1 = O0", "10l", "Oxford", "il1", "to. 5", "4Ohm",
                             "naïve2O", "a_1O"}) {
        EXPECT_EQ(withFigures(text), text);
    }
}

}  // namespace platform::tesseract
