#include "platform/tesseract/line_metrics.h"

#include <cmath>
#include <map>

namespace platform::tesseract {

namespace {

/// Lines whose letters differ by less than this share are of one size.
constexpr double sameSize = 0.35;
constexpr double sameProportions = 0.2;
constexpr double leastAscent = 1.26;
constexpr double leastDescent = 0.3;

LineMetrics measure(const TextLine& line, double letterHeight) {
    std::vector<double> bottoms;
    std::vector<double> heights;
    Box box = line.segments.front().box;
    for (const Segment& segment : line.segments) {
        box = box.united(segment.box);
        for (const Glyph& glyph : segment.glyphs) {
            if (glyph.box.height() >= 0.6 * letterHeight) {
                bottoms.push_back(glyph.box.bottom);
                heights.push_back(glyph.box.height());
            }
        }
    }
    const double baseline = bottoms.empty() ? box.bottom : quantile(bottoms, 0.4);
    const double height = heights.empty() ? letterHeight : quantile(heights, 0.35);
    return {baseline, height, baseline - box.top, std::max(0.0, box.bottom - baseline)};
}

/// Above and below the baseline, in letter heights.
struct Extent {
    double ascent = leastAscent;
    double descent = leastDescent;
};

/// What most lines of about that height have, where there are a few.
Extent usualExtent(const std::vector<LineMetrics>& all, double letterHeight) {
    std::vector<double> ascents;
    std::vector<double> descents;
    for (const LineMetrics& other : all) {
        if (std::abs(other.letterHeight - letterHeight) <= sameProportions * letterHeight) {
            ascents.push_back(other.ascent / other.letterHeight);
            descents.push_back(other.descent / other.letterHeight);
        }
    }
    if (ascents.size() < 3) {
        return {};
    }
    return {std::max(leastAscent, quantile(ascents, 0.7)),
            std::max(leastDescent, quantile(descents, 0.8))};
}

}  // namespace

std::vector<LineMetrics> measureLines(const std::vector<TextLine>& lines, double letterHeight,
                                      Typeface typeface) {
    std::vector<LineMetrics> all;
    std::vector<double> heights;
    for (const TextLine& line : lines) {
        all.push_back(measure(line, letterHeight));
        heights.push_back(all.back().letterHeight);
    }
    if (all.size() >= 2) {
        const double usual = median(heights);
        for (LineMetrics& metrics : all) {
            if (typeface == Typeface::monospaced ||
                std::abs(metrics.letterHeight - usual) < sameSize * usual) {
                metrics.letterHeight = usual;
            }
        }
    }
    std::vector<LineMetrics> shared = all;
    // Heights are whole pixels: far fewer of them than lines.
    std::map<double, Extent> extents;
    for (LineMetrics& metrics : shared) {
        const auto [place, isNew] = extents.try_emplace(metrics.letterHeight);
        if (isNew) {
            place->second = usualExtent(all, metrics.letterHeight);
        }
        const Extent& usual = place->second;
        metrics.ascent = std::max(metrics.ascent, usual.ascent * metrics.letterHeight);
        metrics.descent = std::max(metrics.descent, usual.descent * metrics.letterHeight);
    }
    return shared;
}

}  // namespace platform::tesseract
