#include "platform/tesseract/screen_text_reader.h"

#include <algorithm>
#include <cctype>

#include "platform/tesseract/background_model.h"
#include "platform/tesseract/cell_consensus.h"
#include "platform/tesseract/character_pitch.h"
#include "platform/tesseract/characters.h"
#include "platform/tesseract/connected_components.h"
#include "platform/tesseract/glyph_filter.h"
#include "platform/tesseract/icon_filter.h"
#include "platform/tesseract/ink_map.h"
#include "platform/tesseract/line_finder.h"
#include "platform/tesseract/line_metrics.h"
#include "platform/tesseract/line_picture.h"
#include "platform/tesseract/line_reader.h"
#include "platform/tesseract/reading_order.h"
#include "platform/tesseract/rules.h"
#include "platform/tesseract/spacing.h"

namespace platform::tesseract {

namespace {

/// One or two characters that the engine is this unsure of are a speck.
constexpr int sureConfidence = 40;
constexpr std::size_t speckLength = 2;

/// Below this a line is read a second time, drawn wider, and the surer reading counts.
constexpr int doubtfulConfidence = 60;
constexpr LinePictureStyle secondStyle{.narrowing = 1.05};

bool isSpeck(const LineReading& reading) {
    std::vector<std::string> characters = charactersOf(reading.text);
    std::erase(characters, " ");
    return reading.confidence < sureConfidence && characters.size() <= speckLength;
}

/// Whether a page is covered with specks, or with more marks than a picture of text can hold: what
/// bounds the time that noise takes.
bool isNoise(const ConnectedComponents& components, const std::vector<Glyph>& glyphs,
             double letterHeight) {
    constexpr std::size_t mostGlyphs = 300000;
    constexpr std::size_t manyComponents = 4000;
    constexpr double fewestLetters = 0.3;
    const auto letters = std::count_if(components.all().begin(), components.all().end(),
                                       [letterHeight](const Component& component) {
                                           return component.box.height() >= 0.6 * letterHeight;
                                       });
    return glyphs.size() > mostGlyphs ||
           (components.all().size() > manyComponents &&
            static_cast<double>(letters) <
                fewestLetters * static_cast<double>(components.all().size()));
}

/// Whether letters were read, and surely.
bool isWriting(const LineReading& reading) {
    // In photographs the engine sees single characters, or several that it is unsure of.
    constexpr int sureOfWriting = 65;
    constexpr int fewestLetters = 2;
    const auto letters =
        std::count_if(reading.text.begin(), reading.text.end(), [](char character) {
            const auto byte = static_cast<unsigned char>(character);
            return byte >= 0x80 || std::isalnum(byte) != 0;
        });
    return reading.confidence >= sureOfWriting && letters >= fewestLetters;
}

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

ScreenTextReader::ScreenTextReader(std::unique_ptr<LineReader> lineReader)
    : lineReader_(std::move(lineReader)) {}
ScreenTextReader::~ScreenTextReader() = default;

base::Result<std::unique_ptr<ScreenTextReader>> ScreenTextReader::create(
    const std::vector<std::string>& languages) {
    auto lineReader = LineReader::create(languages);
    if (!lineReader) {
        return lineReader.error();
    }
    return std::unique_ptr<ScreenTextReader>(new ScreenTextReader(std::move(lineReader.value())));
}

base::Result<std::vector<capture::TextObservation>> ScreenTextReader::read(
    const base::Image& image) {
    std::vector<capture::TextObservation> observations;
    if (image.isEmpty()) {
        return observations;
    }
    if (static_cast<long>(image.width()) * image.height() > largestPicture) {
        return base::Error{base::ErrorKind::invalid,
                           "The picture is too large for its text to be recognised"};
    }
    const ColorPlane page = colorsOf(image);
    const BackgroundModel background(page);
    InkPlane ink = measureInk(page, background);
    Mask mask = binarize(ink);
    const ConnectedComponents roughComponents(mask);
    const double roughHeight = commonLetterHeight(roughComponents);
    if (roughHeight <= 0) {
        return observations;
    }
    if (isNoise(roughComponents, {}, roughHeight)) {
        return observations;
    }
    const Rules rules(mask, roughHeight, commonCapitalHeight(roughComponents));
    rules.removeFrom(mask, ink);
    const ConnectedComponents components(mask);
    const GlyphFilter filter(page, ink, mask, components, background);
    const double letterHeight = filter.letterHeight();

    std::vector<Glyph> glyphs = filter.glyphs();
    if (isNoise(components, glyphs, roughHeight)) {
        return observations;
    }
    std::vector<TextLine> rows = LineFinder(letterHeight, rules.upright()).find(std::move(glyphs));
    IconFilter(page, ink, components, letterHeight, commonCapitalHeight(components))
        .removeFrom(rows);
    const double pitch = measurePitch(rows, letterHeight);
    const Typeface typeface = pitch > 0 ? Typeface::monospaced : Typeface::proportional;
    std::vector<TextLine> lines = ReadingOrder(background, letterHeight, typeface).sort(rows);
    std::erase_if(lines, [&](const TextLine& line) { return isSpecks(line, letterHeight); });

    const auto metrics = measureLines(lines, letterHeight, typeface);
    const LinePainter painter(ink, components, letterHeight);
    CellConsensus cells(ink, pitch, letterHeight);
    Spacing spacing(ink, letterHeight);
    bool hasWriting = lines.size() == 1;
    for (std::size_t index = 0; index < lines.size(); ++index) {
        LineReading reading = lineReader_->read(painter.paint(lines[index], metrics[index], {}));
        if (reading.confidence < doubtfulConfidence) {
            LineReading second =
                lineReader_->read(painter.paint(lines[index], metrics[index], secondStyle));
            if (second.confidence > reading.confidence) {
                reading = std::move(second);
            }
        }
        hasWriting = hasWriting || isWriting(reading);
        if (isSpeck(reading)) {
            reading.text.clear();
        }
        if (typeface == Typeface::monospaced) {
            cells.add(lines[index], metrics[index], reading);
        } else {
            spacing.add(lines[index], metrics[index], reading.text);
        }
    }
    for (std::size_t index = 0; hasWriting && index < lines.size(); ++index) {
        const std::string text =
            typeface == Typeface::monospaced ? cells.corrected(index) : spacing.corrected(index);
        if (!text.empty()) {
            observations.push_back({{text}});
        }
    }
    return observations;
}

}  // namespace platform::tesseract
