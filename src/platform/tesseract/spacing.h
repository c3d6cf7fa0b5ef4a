#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/tesseract/character_alignment.h"
#include "platform/tesseract/character_columns.h"
#include "platform/tesseract/character_sizes.h"
#include "platform/tesseract/line_metrics.h"

namespace platform::tesseract {

/// Corrects the readings of proportional lines by where their characters stand: spaces, marks that
/// were not read, the shape of quotation marks, and what differs only in size.
///
/// All lines are added first. The width from which a gap is a space is the one that agrees best
/// with the spaces that the engine read on this page (a decision stump). A line whose columns
/// cannot be matched with its characters keeps the engine's reading.
class Spacing {
  public:
    /// `ink` must outlive this; `letterHeight` in pixels.
    Spacing(const InkPlane& ink, double letterHeight);
    ~Spacing();

    /// What the characters of a line that was read as `text` are and where; on any thread.
    struct Line;
    [[nodiscard]] Line look(const TextLine& line, const LineMetrics& metrics,
                            const std::string& text) const;
    /// Returns the number of the line.
    std::size_t add(Line line);

    /// The corrected text of the line that was added as number `index`.
    [[nodiscard]] std::string corrected(std::size_t index);

  private:
    enum class Gap : std::uint8_t {
        /// The character touches the one in front of it, or was not found on the page.
        unknown,
        measured,
        betweenSegments,
    };
    struct Character {
        std::string text;
        bool isAfterSpace = false;
        Gap gap = Gap::unknown;
        /// In front of it, in letter heights of its line.
        double width = 0;
        /// Whether it has a column to itself, and `place` is known.
        bool isAlone = false;
        CharacterPlace place;
    };

    [[nodiscard]] std::vector<Character> charactersIn(const std::vector<CharacterColumn>& columns,
                                                      const std::vector<ReadCharacter>& read,
                                                      const std::vector<ColumnReading>& readings,
                                                      const LineMetrics& metrics) const;
    /// In letter heights.
    struct SpaceWidths {
        /// A gap this wide is a space that the engine overlooked.
        double certain;
        /// The same between two small letters, which the engine seldom joins.
        double betweenLetters;
        /// A narrower one beside punctuation is none.
        double impossible;
    };
    [[nodiscard]] SpaceWidths spaceWidths() const;

    const InkPlane& ink_;
    double letterHeight_;
    std::vector<Line> lines_;
    /// Of all lines; once the first of them is corrected.
    std::optional<SpaceWidths> widths_;
};

struct Spacing::Line {
    std::string text;
    /// Empty where columns and characters do not match.
    std::vector<Character> characters;
    CharacterSizes sizes;
};

}  // namespace platform::tesseract
