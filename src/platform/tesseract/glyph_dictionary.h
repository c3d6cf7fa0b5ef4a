#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/tesseract/glyph_shape.h"

namespace platform::tesseract {

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
