#include "platform/tesseract/glyph_dictionary.h"

#include <cstdlib>

namespace platform::tesseract {

namespace {

/// Baselines are measured line by line and may be off by one.
constexpr int riseTolerance = 1;
/// How much of the readings must agree.
constexpr double majority = 0.6;

}  // namespace

void GlyphDictionary::learn(const GlyphShape& shape, const std::string& character) {
    std::vector<Entry>& entries = entries_[{shape.width, shape.pixels}];
    for (Entry& entry : entries) {
        if (std::abs(entry.rise - shape.rise) <= riseTolerance) {
            ++entry.readings[character];
            return;
        }
    }
    entries.push_back({shape.rise, {{character, 1}}});
}

std::optional<std::string> GlyphDictionary::find(const GlyphShape& shape) const {
    const auto place = entries_.find({shape.width, shape.pixels});
    if (place == entries_.end()) {
        return std::nullopt;
    }
    for (const Entry& entry : place->second) {
        if (std::abs(entry.rise - shape.rise) > riseTolerance) {
            continue;
        }
        int all = 0;
        int most = 0;
        const std::string* commonest = nullptr;
        for (const auto& [character, count] : entry.readings) {
            all += count;
            if (count > most) {
                most = count;
                commonest = &character;
            }
        }
        if (commonest != nullptr && all >= fewestReadings && most >= majority * all) {
            return *commonest;
        }
    }
    return std::nullopt;
}

}  // namespace platform::tesseract
