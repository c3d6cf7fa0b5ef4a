#pragma once

#include <string>

#include "platform/tesseract/text_line.h"

namespace platform::tesseract {

/// Sets the spaces of a line that was read from where its glyphs stand: in monospaced text from the
/// empty cells, elsewhere where a gap is too wide to be none. A line whose glyphs cannot be matched
/// with its characters stays as it is.
class Spacing {
  public:
    /// `pitch` is 0 for proportional text; both in pixels.
    Spacing(double letterHeight, double pitch) : letterHeight_(letterHeight), pitch_(pitch) {}

    [[nodiscard]] std::string apply(const std::string& text, const TextLine& line) const;

  private:
    [[nodiscard]] std::string applyGrid(const std::string& text,
                                        const std::vector<std::string>& characters,
                                        const std::vector<Glyph>& glyphs) const;
    [[nodiscard]] std::string applyGaps(const std::string& text,
                                        const std::vector<std::string>& characters,
                                        const std::vector<Glyph>& glyphs) const;

    double letterHeight_;
    double pitch_;
};

}  // namespace platform::tesseract
