#include "platform/tesseract/line_picture.h"

#include <cmath>

#include "platform/tesseract/resampling.h"

namespace platform::tesseract {

namespace {

/// In letter heights.
constexpr double sideMargin = 0.2;
constexpr double widestGap = 1;
/// Between segments: however close two cells of a table stand, they are two words.
constexpr double narrowestGap = 0.6;
constexpr double wordGap = 0.35;
/// Anti-aliasing reaches this far beyond the pixels that count as ink.
constexpr int fringe = 1;
constexpr int faintInk = 20;
/// The strongest part of a word's ink becomes black.
constexpr double blackShare = 0.15;

void stretch(InkPlane& picture, int left, int right) {
    int histogram[256] = {};
    long inked = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = left; x < right; ++x) {
            if (picture.at(x, y) > faintInk) {
                ++histogram[picture.at(x, y)];
                ++inked;
            }
        }
    }
    int strongest = 255;
    long counted = histogram[255];
    while (strongest > 1 &&
           static_cast<double>(counted) < blackShare * static_cast<double>(inked)) {
        counted += histogram[--strongest];
    }
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = left; x < right; ++x) {
            std::uint8_t& value = picture.at(x, y);
            value =
                static_cast<std::uint8_t>(std::min(255, (value * 255 + strongest / 2) / strongest));
        }
    }
}

}  // namespace

LinePainter::LinePainter(const InkPlane& ink, const ConnectedComponents& components,
                         double letterHeight)
    : ink_(ink), letterHeight_(letterHeight), owners_(ink.width(), ink.height()) {
    std::uint32_t owner = 0;
    for (const Component& component : components.all()) {
        ++owner;
        for (const Run* run = components.runsBegin(component); run != components.runsEnd(component);
             ++run) {
            std::fill(owners_.row(run->y) + run->left, owners_.row(run->y) + run->right, owner);
        }
    }
}

InkPlane LinePainter::paint(const TextLine& line, const LineMetrics& metrics,
                            const LinePictureStyle& style) const {
    const double margin = style.margin * (metrics.ascent + metrics.descent);
    const double top = metrics.baseline - metrics.ascent - margin;
    const double bottom = metrics.baseline + metrics.descent + margin;
    const int firstRow = static_cast<int>(std::floor(top)) - 1;
    const int rows = static_cast<int>(std::ceil(bottom)) - firstRow + 1;
    InkPlane picture = compose(line, firstRow, rows);
    stretchWords(picture);
    const double scaleY = style.height / (bottom - top);
    const double scaleX = scaleY * style.narrowing;
    const int width = std::max(8, static_cast<int>(picture.width() * scaleX));
    InkPlane scaled = resample(picture, 0, top - firstRow, width, style.height, scaleX, scaleY,
                               ResamplingKernel::lanczos);
    for (int y = 0; y < scaled.height(); ++y) {
        for (int x = 0; x < scaled.width(); ++x) {
            scaled.at(x, y) = static_cast<std::uint8_t>(255 - scaled.at(x, y));
        }
    }
    return scaled;
}

InkPlane LinePainter::compose(const TextLine& line, int top, int height) const {
    const int side = std::max(1, static_cast<int>(sideMargin * letterHeight_));
    const int widest = static_cast<int>(widestGap * letterHeight_);
    const int narrowest = std::min(widest, static_cast<int>(narrowestGap * letterHeight_));
    std::vector<int> lefts;
    int width = side;
    for (std::size_t index = 0; index < line.segments.size(); ++index) {
        const Box& box = line.segments[index].box;
        if (index > 0) {
            width += std::clamp(box.left - line.segments[index - 1].box.right, narrowest, widest);
        }
        lefts.push_back(width);
        width += box.width();
    }
    InkPlane picture(width + side, height);
    for (std::size_t index = 0; index < line.segments.size(); ++index) {
        draw(line.segments[index], top, lefts[index], picture);
    }
    return picture;
}

void LinePainter::draw(const Segment& segment, int top, int left, InkPlane& picture) const {
    for (const Glyph& glyph : segment.glyphs) {
        const Box& box = glyph.box;
        const auto owner = static_cast<std::uint32_t>(glyph.component + 1);
        for (int y = std::max(0, box.top - fringe);
             y < std::min(ink_.height(), box.bottom + fringe); ++y) {
            if (y < top || y >= top + picture.height()) {
                continue;
            }
            for (int x = std::max(0, box.left - fringe);
                 x < std::min(ink_.width(), box.right + fringe); ++x) {
                const int to = left + x - segment.box.left;
                const std::uint32_t of = owners_.at(x, y);
                if (to >= 0 && to < picture.width() && (of == 0 || of == owner)) {
                    picture.at(to, y - top) = ink_.at(x, y);
                }
            }
        }
    }
}

void LinePainter::stretchWords(InkPlane& picture) const {
    const int width = picture.width();
    std::vector<bool> inked(static_cast<std::size_t>(width), false);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < width; ++x) {
            if (picture.at(x, y) > faintInk) {
                inked[static_cast<std::size_t>(x)] = true;
            }
        }
    }
    for (int x = 0; x < width;) {
        if (!inked[static_cast<std::size_t>(x)]) {
            ++x;
            continue;
        }
        int end = x;
        int empty = 0;
        for (int column = x; column < width && empty <= wordGap * letterHeight_; ++column) {
            if (inked[static_cast<std::size_t>(column)]) {
                end = column + 1;
                empty = 0;
            } else {
                ++empty;
            }
        }
        stretch(picture, x, end);
        x = end;
    }
}

}  // namespace platform::tesseract
