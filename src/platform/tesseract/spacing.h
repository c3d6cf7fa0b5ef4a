#pragma once

#include <string>

#include "platform/tesseract/text_line.h"

namespace platform::tesseract {

/// Sets the spaces of a line of proportional text that was read: where a gap between its glyphs is
/// too wide to be none. A line whose glyphs cannot be matched with its characters stays as it is.
class Spacing {
  public:
    /// In pixels.
    explicit Spacing(double letterHeight) : letterHeight_(letterHeight) {}

    [[nodiscard]] std::string apply(const std::string& text, const TextLine& line) const;

  private:
    double letterHeight_;
};

}  // namespace platform::tesseract
