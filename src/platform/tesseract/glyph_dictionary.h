#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/tesseract/page_planes.h"

namespace platform::tesseract {

/// The shape of one character as it is drawn, cut to its ink.
struct GlyphShape {
    int width = 0;
    /// One byte a pixel, 0 or 1, rows from the top.
    std::vector<std::uint8_t> pixels;
    /// From the top of the shape to the baseline, pixels; tells a comma from an apostrophe.
    int rise = 0;

    [[nodiscard]] bool isEmpty() const { return pixels.empty(); }
};

/// What the engine read each shape of a page as. A screen draws a character the same way each time,
/// so that many readings of one shape correct a single wrong one (an unsupervised form of the
/// document-specific recognition of Ho and Nagy, 2000).
class GlyphDictionary {
  public:
    void learn(const GlyphShape& shape, const std::string& character);

    /// What most readings of the shape agree on, if at least `fewestReadings` were learned.
    [[nodiscard]] std::optional<std::string> find(const GlyphShape& shape) const;

    static constexpr int fewestReadings = 2;

  private:
    struct Entry {
        int rise = 0;
        std::map<std::string, int> readings;
    };

    std::map<std::pair<int, std::vector<std::uint8_t>>, std::vector<Entry>> entries_;
};

}  // namespace platform::tesseract
