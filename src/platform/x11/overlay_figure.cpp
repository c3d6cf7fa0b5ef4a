#include "platform/x11/overlay_figure.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform::x11 {

namespace {

// An edge that belongs on a pixel boundary must not miss it by the last bits of a division by 1.75;
// a fraction finer than this is invisible.
double settled(double pixels) {
    constexpr double steps = 1024;
    return std::round(pixels * steps) / steps;
}

RoundedBox grownBy(const RoundedBox& box, double margin) {
    RoundedBox grown{box.left - margin, box.top - margin, box.right + margin, box.bottom + margin,
                     0};
    // A square corner stays square: the line's joins are mitred.
    grown.radius = box.radius > 0 ? std::max(box.radius + margin, 0.0) : 0.0;
    return grown.isEmpty() ? RoundedBox{} : grown;
}

double textCoverage(const Figure& figure, int x, int y) {
    const int column = x - static_cast<int>(figure.outer.left);
    const int row = y - static_cast<int>(figure.outer.top);
    const TextBitmap& bitmap = *figure.text;
    if (column < 0 || row < 0 || column >= bitmap.width || row >= bitmap.height) {
        return 0;
    }
    return bitmap.coverage[static_cast<std::size_t>(row) * static_cast<std::size_t>(bitmap.width) +
                           static_cast<std::size_t>(column)] /
           255.0;
}

}  // namespace

double figureCoverage(const Figure& figure, int x, int y) {
    if (figure.text) {
        return textCoverage(figure, x, y);
    }
    const double outside = pixelCoverage(figure.outer, x, y);
    if (outside <= 0 || figure.inner.isEmpty()) {
        return outside;
    }
    return std::max(outside - pixelCoverage(figure.inner, x, y), 0.0);
}

FigureBuilder::FigureBuilder(double scale, std::int32_t nativeHeight, TextRasterizer& rasterizer)
    : scale_(scale), nativeHeight_(nativeHeight), rasterizer_(rasterizer) {}

std::vector<Figure> FigureBuilder::build(const std::vector<overlay::DrawingStep>& steps) {
    std::vector<Figure> figures;
    figures.reserve(steps.size());
    for (const auto& step : steps) {
        figures.push_back(std::visit([this](const auto& one) { return figureOf(one); }, step));
    }
    texts_ = std::exchange(nextTexts_, {});
    return figures;
}

RoundedBox FigureBuilder::box(const base::Rect& rect, double cornerRadius) const {
    RoundedBox box{settled(rect.minX() * scale_), settled(nativeHeight_ - rect.maxY() * scale_),
                   settled(rect.maxX() * scale_), settled(nativeHeight_ - rect.minY() * scale_), 0};
    const double shorter = std::min(box.right - box.left, box.bottom - box.top);
    box.radius = std::clamp(cornerRadius * scale_, 0.0, std::max(shorter / 2, 0.0));
    return box;
}

Figure FigureBuilder::figureOf(const overlay::FillStep& step) const {
    return {FigureEffect::paint, step.color, box(step.rect, step.cornerRadius), {}, nullptr};
}

Figure FigureBuilder::figureOf(const overlay::ClearStep& step) const {
    return {FigureEffect::clear, {}, box(step.rect, step.cornerRadius), {}, nullptr};
}

Figure FigureBuilder::figureOf(const overlay::StrokeStep& step) const {
    const RoundedBox path = box(step.rect, step.cornerRadius);
    const double half = step.lineWidth * scale_ / 2;
    return {FigureEffect::paint, step.color, grownBy(path, half), grownBy(path, -half), nullptr};
}

Figure FigureBuilder::figureOf(const overlay::SegmentStep& step) const {
    const double half = step.lineWidth / 2;
    const bool isHorizontal = step.from.y == step.to.y;
    const base::Rect line{{std::min(step.from.x, step.to.x), std::min(step.from.y, step.to.y)},
                          {std::abs(step.from.x - step.to.x), std::abs(step.from.y - step.to.y)}};
    const base::Rect stroke =
        isHorizontal
            ? base::Rect{{line.minX(), line.minY() - half}, {line.size.width, step.lineWidth}}
            : base::Rect{{line.minX() - half, line.minY()}, {step.lineWidth, line.size.height}};
    return {FigureEffect::paint, step.color, box(stroke, 0), {}, nullptr};
}

Figure FigureBuilder::figureOf(const overlay::TextStep& step) {
    Figure figure{FigureEffect::paint, step.color, {}, {}, bitmapOf(step)};
    // On whole pixels: letters that fall between them blur.
    figure.outer.left = std::round(step.origin.x * scale_) + figure.text->offsetX;
    figure.outer.top = std::round(nativeHeight_ - step.origin.y * scale_) + figure.text->offsetY;
    figure.outer.right = figure.outer.left + figure.text->width;
    figure.outer.bottom = figure.outer.top + figure.text->height;
    return figure;
}

std::shared_ptr<const TextBitmap> FigureBuilder::bitmapOf(const overlay::TextStep& step) {
    const auto known = std::find_if(texts_.begin(), texts_.end(), [&](const CachedText& cached) {
        return cached.text == step.text && cached.font == step.font;
    });
    auto bitmap = known != texts_.end() ? known->bitmap
                                        : std::make_shared<const TextBitmap>(
                                              rasterizer_.rasterize(step.text, step.font, scale_));
    nextTexts_.push_back({step.text, step.font, bitmap});
    return bitmap;
}

}  // namespace platform::x11
