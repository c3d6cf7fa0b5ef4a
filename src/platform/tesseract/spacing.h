#pragma once

#include <string>
#include <vector>

#include "platform/tesseract/character_columns.h"
#include "platform/tesseract/line_metrics.h"

namespace platform::tesseract {

/// Corrects the readings of proportional lines by where their characters stand: spaces, low lines
/// and the shape of quotation marks.
///
/// All lines are added first. The width from which a gap is a space is the one that agrees best
/// with the spaces that the engine read on this page (a decision stump). A line whose columns
/// cannot be matched with its characters keeps the engine's spaces.
class Spacing {
  public:
    /// `ink` must outlive this; `letterHeight` in pixels.
    Spacing(const InkPlane& ink, double letterHeight) : ink_(ink), letterHeight_(letterHeight) {}

    void add(const TextLine& line, const LineMetrics& metrics, const std::string& text);

    /// The corrected text of the line that was added as number `index`.
    [[nodiscard]] std::string corrected(std::size_t index);

  private:
    struct Character {
        std::string text;
        /// In front of it, in letter heights of its line.
        double gap = 0;
        bool isAfterSpace = false;
        bool startsSegment = false;
    };
    struct Line {
        std::string text;
        /// Empty where columns and characters do not match.
        std::vector<Character> characters;
    };

    [[nodiscard]] double narrowestSpace() const;

    const InkPlane& ink_;
    double letterHeight_;
    std::vector<Line> lines_;
    /// Once all lines are there: from which gap on there is a space, in letter heights; 0 before.
    double narrowest_ = 0;
};

}  // namespace platform::tesseract
