#include "platform/tesseract/writing_decision.h"

#include <algorithm>
#include <cctype>

#include "platform/tesseract/characters.h"

namespace platform::tesseract {

namespace {

/// From here on the engine is hardly ever wrong about whether something is writing.
constexpr int certainConfidence = 80;
/// In photographs the engine sees single characters, or several that it is unsure of.
constexpr int sureConfidence = 65;
constexpr int fewestLetters = 2;
/// So many letters are not seen by chance, whatever they stand on.
constexpr int manyLetters = 8;
/// So many, and they may be faint: as what cannot be chosen in a menu.
constexpr int severalLetters = 5;
/// The share of a line's ground that is flat.
constexpr double flatGround = 0.6;
/// Unsure readings that are fainter than the page's text are shadows and edges of pictures.
constexpr double faintShare = 0.6;

}  // namespace

int lettersIn(const std::string& text) {
    const auto characters = charactersOf(text);
    return static_cast<int>(
        std::count_if(characters.begin(), characters.end(), [](const std::string& character) {
            const auto lead = static_cast<unsigned char>(character.front());
            // Of the longer ones, C2 and E2 begin signs and punctuation.
            return lead < 0x80 ? std::isalnum(lead) != 0 : lead != 0xC2 && lead != 0xE2;
        }));
}

void WritingDecision::add(const TextLine& line, double ground, const LineReading& reading) {
    lines_.push_back({reading.confidence, lettersIn(reading.text), ground, inkOf(line)});
}

bool WritingDecision::isSure(const Line& line) const {
    return line.confidence >= sureConfidence && line.letters >= fewestLetters &&
           (line.ground >= flatGround || line.letters >= manyLetters);
}

bool WritingDecision::isWriting(std::size_t index) const {
    const Line& line = lines_[index];
    if (isSure(line)) {
        return true;
    }
    const bool isOnlyLine = lines_.size() == 1 && line.letters > 0;
    const bool hasWriting = std::any_of(lines_.begin(), lines_.end(),
                                        [this](const Line& other) { return isSure(other); });
    if ((!hasWriting && !isOnlyLine) || line.ground < flatGround) {
        return false;
    }
    // Lines of nothing but signs are usual in terminals.
    if (line.confidence >= sureConfidence || typeface_ == Typeface::monospaced) {
        return true;
    }
    return line.letters >= severalLetters ||
           (line.letters > 0 && line.ink >= faintShare * usualInk());
}

double WritingDecision::usualInk() const {
    std::vector<double> inks;
    for (const Line& line : lines_) {
        if (line.confidence >= certainConfidence) {
            inks.push_back(line.ink);
        }
    }
    return median(std::move(inks));
}

double WritingDecision::inkOf(const TextLine& line) const {
    std::vector<double> strengths;
    for (const Glyph& glyph : line.glyphsFromLeft()) {
        int strongest = 0;
        for (int y = glyph.box.top; y < glyph.box.bottom; ++y) {
            for (int x = glyph.box.left; x < glyph.box.right; ++x) {
                strongest = std::max<int>(strongest, ink_.at(x, y));
            }
        }
        strengths.push_back(strongest);
    }
    return median(std::move(strengths));
}

}  // namespace platform::tesseract
