#include "platform/tesseract/page_analysis.h"

#include <algorithm>

#include "platform/tesseract/background_model.h"
#include "platform/tesseract/character_pitch.h"
#include "platform/tesseract/glyph_filter.h"
#include "platform/tesseract/icon_filter.h"
#include "platform/tesseract/ink_map.h"
#include "platform/tesseract/line_finder.h"
#include "platform/tesseract/line_ground.h"
#include "platform/tesseract/rules.h"
#include "platform/tesseract/thread_pair.h"

namespace platform::tesseract {

namespace {

/// Whether a page is covered with specks, or with more marks than a picture of text can hold: what
/// bounds the time that noise takes.
bool isNoise(const ConnectedComponents& components, std::size_t glyphCount, double letterHeight) {
    // 8K by 8K full of the smallest type that can be read.
    constexpr std::size_t mostGlyphs = 1500000;
    constexpr std::size_t manyComponents = 4000;
    constexpr double fewestLetters = 0.3;
    const auto letters = std::count_if(components.all().begin(), components.all().end(),
                                       [letterHeight](const Component& component) {
                                           return component.box.height() >= 0.6 * letterHeight;
                                       });
    return glyphCount > mostGlyphs ||
           (components.all().size() > manyComponents &&
            static_cast<double>(letters) <
                fewestLetters * static_cast<double>(components.all().size()));
}

/// About, of a line.
constexpr int pixelsOfLine = 6000;

/// Rows of nothing but dots and dashes no wider than a letter.
bool isSpecks(const TextLine& line, double letterHeight) {
    int tallest = 0;
    int width = 0;
    for (const Glyph& glyph : line.glyphsFromLeft()) {
        tallest = std::max(tallest, glyph.box.height());
        width += glyph.box.width();
    }
    return tallest < 0.45 * letterHeight && width < 1.2 * letterHeight;
}

}  // namespace

PageAnalysis::PageAnalysis(const base::Image& image) {
    // The planes that only the analysis needs go with it: half of the memory of a large picture.
    const ColorPlane page = colorsOf(image);
    const BackgroundModel background(page);
    ink_ = measureInk(page, background);
    Mask mask = binarize(ink_);
    components_ = std::make_unique<ConnectedComponents>(mask);
    const double roughHeight = commonLetterHeight(*components_);
    if (roughHeight <= 0 || isNoise(*components_, 0, roughHeight)) {
        return;
    }
    const Rules rules(mask, roughHeight, commonCapitalHeight(*components_));
    if (!rules.isEmpty()) {
        rules.removeFrom(mask, ink_);
        components_ = std::make_unique<ConnectedComponents>(mask);
    }
    const GlyphFilter filter(page, ink_, mask, *components_, background);
    letterHeight_ = filter.letterHeight();

    std::vector<Glyph> glyphs = filter.glyphs();
    if (isNoise(*components_, glyphs.size(), roughHeight)) {
        return;
    }
    std::vector<TextLine> rows = LineFinder(letterHeight_, rules.upright()).find(std::move(glyphs));
    IconFilter(page, ink_, *components_, letterHeight_, commonCapitalHeight(*components_))
        .removeFrom(rows);
    pitch_ = measurePitch(rows, letterHeight_);
    lines_ = ReadingOrder(background, letterHeight_, typeface()).sort(rows);
    std::erase_if(lines_, [this](const TextLine& line) { return isSpecks(line, letterHeight_); });
    metrics_ = measureLines(lines_, letterHeight_, typeface());
    pitches_ = pitchesOf(lines_, pitch_, letterHeight_);
    grounds_.resize(lines_.size());
    shareBands(static_cast<int>(lines_.size()), pixelsOfLine, [&](int first, int end) {
        for (auto index = static_cast<std::size_t>(first); index < static_cast<std::size_t>(end);
             ++index) {
            grounds_[index] = flatShareAround(lines_[index], background, mask);
        }
    });
}

}  // namespace platform::tesseract
