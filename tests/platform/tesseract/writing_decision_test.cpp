#include "platform/tesseract/writing_decision.h"

#include <gtest/gtest.h>

#include "drawn_letters.h"
#include "platform/tesseract/line_finder.h"
#include "platform/tesseract/line_ground.h"

namespace platform::tesseract {

namespace {

constexpr Color white{255, 255, 255};

LineReading reading(const std::string& text, int confidence) {
    LineReading result;
    result.text = text;
    result.confidence = confidence;
    return result;
}

/// Two rows of boxes, the lower one fainter where asked.
class DecisionOf {
  public:
    enum class Ground : std::uint8_t { flat, uneven };

    explicit DecisionOf(Ground ground, int lowerInk = 255) : drawn_(200, 80) {
        drawn_.write(20, 30, 8);
        drawn_.write(20, 60, 8);
        for (int y = 45; y < 65; ++y) {
            for (int x = 0; x < 200; ++x) {
                drawn_.ink().at(x, y) =
                    static_cast<std::uint8_t>(drawn_.ink().at(x, y) * lowerInk / 255);
            }
        }
        ground_ = ColorPlane(200, 80, white);
        for (int y = 0; ground == Ground::uneven && y < 80; ++y) {
            for (int x = 0; x < 200; ++x) {
                const auto shade = static_cast<std::uint8_t>((x * 37 + y * 91) % 200);
                ground_.at(x, y) = {shade, shade, shade};
            }
        }
        rows_ = LineFinder(drawnLetterHeight, {}).find(drawn_.glyphs());
        background_ = std::make_unique<BackgroundModel>(ground_);
    }

    bool lowerIsWriting(const LineReading& upper, const LineReading& lower,
                        Typeface typeface = Typeface::proportional) {
        WritingDecision decision(drawn_.ink(), typeface);
        decision.add(rows_[0], groundOf(0), upper);
        decision.add(rows_[1], groundOf(1), lower);
        return decision.isWriting(1);
    }
    bool isWritingAlone(const LineReading& reading) {
        WritingDecision decision(drawn_.ink(), Typeface::proportional);
        decision.add(rows_[0], groundOf(0), reading);
        return decision.isWriting(0);
    }

  private:
    double groundOf(std::size_t row) {
        return flatShareAround(rows_[row], *background_, drawn_.mask());
    }

    DrawnLetters drawn_;
    ColorPlane ground_;
    std::vector<TextLine> rows_;
    std::unique_ptr<BackgroundModel> background_;
};

const LineReading sure = reading("Harbour", 95);

}  // namespace

TEST(WritingDecision, a_sure_reading_is_writing_on_any_ground) {
    EXPECT_TRUE(DecisionOf(DecisionOf::Ground::flat).isWritingAlone(sure));
    EXPECT_TRUE(DecisionOf(DecisionOf::Ground::uneven).isWritingAlone(reading("Harbour view", 70)));
}

TEST(WritingDecision, signs_alone_are_no_writing) {
    DecisionOf flat(DecisionOf::Ground::flat);
    EXPECT_FALSE(flat.isWritingAlone(reading("—", 90)));
    EXPECT_FALSE(flat.isWritingAlone(reading("‘", 90)));
    EXPECT_TRUE(flat.isWritingAlone(reading("7", 90)));
}

TEST(WritingDecision, a_few_letters_on_uneven_ground_are_part_of_a_picture) {
    const LineReading few = reading("Lxe", 70);
    EXPECT_FALSE(DecisionOf(DecisionOf::Ground::uneven).lowerIsWriting(sure, few));
    EXPECT_TRUE(DecisionOf(DecisionOf::Ground::flat).lowerIsWriting(sure, few));
}

TEST(WritingDecision, an_unsure_reading_needs_a_page_with_sure_ones) {
    DecisionOf flat(DecisionOf::Ground::flat);
    const LineReading unsure = reading("Qnit", 50);
    EXPECT_TRUE(flat.lowerIsWriting(sure, unsure));
    EXPECT_FALSE(flat.lowerIsWriting(unsure, unsure));
}

TEST(WritingDecision, an_unsure_reading_that_is_faint_needs_several_letters) {
    DecisionOf faint(DecisionOf::Ground::flat, 60);
    EXPECT_FALSE(faint.lowerIsWriting(sure, reading("iy,", 50)));
    EXPECT_TRUE(faint.lowerIsWriting(sure, reading("Redo Ctrl+Y", 50)));
}

TEST(WritingDecision, terminals_have_lines_of_signs) {
    DecisionOf flat(DecisionOf::Ground::flat);
    const LineReading signs = reading("^~~~", 30);
    EXPECT_TRUE(flat.lowerIsWriting(sure, signs, Typeface::monospaced));
    EXPECT_FALSE(flat.lowerIsWriting(sure, signs, Typeface::proportional));
}

TEST(WritingDecision, figures_and_foreign_letters_are_letters) {
    EXPECT_EQ(lettersIn("a7é"), 3);
    EXPECT_EQ(lettersIn("‘—°…"), 0);
}

}  // namespace platform::tesseract
