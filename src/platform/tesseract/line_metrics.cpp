#include "platform/tesseract/line_metrics.h"

#include <cmath>

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
    for (LineMetrics& metrics : shared) {
        std::vector<double> ascents;
        std::vector<double> descents;
        for (const LineMetrics& other : all) {
            if (std::abs(other.letterHeight - metrics.letterHeight) <=
                sameProportions * metrics.letterHeight) {
                ascents.push_back(other.ascent / other.letterHeight);
                descents.push_back(other.descent / other.letterHeight);
            }
        }
        if (ascents.size() >= 3) {
            metrics.ascent =
                std::max(metrics.ascent, quantile(ascents, 0.7) * metrics.letterHeight);
            metrics.descent =
                std::max(metrics.descent, quantile(descents, 0.8) * metrics.letterHeight);
        }
        metrics.ascent = std::max(metrics.ascent, leastAscent * metrics.letterHeight);
        metrics.descent = std::max(metrics.descent, leastDescent * metrics.letterHeight);
    }
    return shared;
}

}  // namespace platform::tesseract
