#pragma once

#include <string>
#include <vector>

#include "platform/tesseract/line_reader.h"
#include "platform/tesseract/reading_order.h"
#include "platform/tesseract/text_line.h"

namespace platform::tesseract {

/// Decides which lines are writing and which are parts of pictures that look like letters to an
/// engine that cannot say "nothing". Writing is read surely; what is not must at least stand on a
/// flat surface, as text on screens does, and beside proportional text hold several letters, or
/// one that is as strong as the other text.
/// All lines are added first; a page without a line that is surely writing has none.
class WritingDecision {
  public:
    /// `ink` must outlive this.
    WritingDecision(const InkPlane& ink, Typeface typeface) : ink_(ink), typeface_(typeface) {}

    /// `ground` is how flat the line's ground is, 0..1.
    void add(const TextLine& line, double ground, const LineReading& reading);

    /// Whether the line that was added as number `index` is writing.
    [[nodiscard]] bool isWriting(std::size_t index) const;

  private:
    struct Line {
        int confidence = 0;
        int letters = 0;
        double ground = 1;
        /// The usual strength of its glyphs.
        double ink = 0;
    };

    [[nodiscard]] double inkOf(const TextLine& line) const;
    [[nodiscard]] bool isSure(const Line& line) const;
    [[nodiscard]] double usualInk() const;

    const InkPlane& ink_;
    Typeface typeface_;
    std::vector<Line> lines_;
};

/// How many characters of a reading are letters or figures.
int lettersIn(const std::string& text);

}  // namespace platform::tesseract
