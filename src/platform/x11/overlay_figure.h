#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "overlay/overlay_surface.h"
#include "platform/text_rasterizer.h"
#include "platform/x11/coverage.h"
#include "platform/x11/native_geometry.h"

namespace platform::x11 {

enum class FigureEffect {
    /// Laid over what is there.
    paint,
    /// Takes away what is there.
    clear,
};

/// One drawing step in pixels of its window: y down, every fraction of a pixel kept.
struct Figure {
    FigureEffect effect = FigureEffect::paint;
    overlay::Color color;
    RoundedBox outer;
    /// What a stroke leaves out; empty for everything else.
    RoundedBox inner;
    /// Set for text alone; its bitmap then decides inside of `outer`.
    std::shared_ptr<const TextBitmap> text;
    friend bool operator==(const Figure&, const Figure&) = default;
};

/// How much of the pixel (x, y) the figure covers, from 0 to 1.
double figureCoverage(const Figure& figure, int x, int y);

/// Turns drawing steps into figures for one window. Main thread.
class FigureBuilder {
  public:
    /// `nativeHeight`: of the window, pixels. `rasterizer` must outlive the builder.
    FigureBuilder(double scale, std::int32_t nativeHeight, TextRasterizer& rasterizer);

    [[nodiscard]] std::vector<Figure> build(const std::vector<overlay::DrawingStep>& steps);

  private:
    struct CachedText {
        std::string text;
        overlay::Font font;
        std::shared_ptr<const TextBitmap> bitmap;
    };

    [[nodiscard]] Figure figureOf(const overlay::FillStep& step) const;
    [[nodiscard]] Figure figureOf(const overlay::ClearStep& step) const;
    [[nodiscard]] Figure figureOf(const overlay::StrokeStep& step) const;
    [[nodiscard]] Figure figureOf(const overlay::SegmentStep& step) const;
    [[nodiscard]] Figure figureOf(const overlay::TextStep& step);
    [[nodiscard]] RoundedBox box(const base::Rect& rect, double cornerRadius) const;
    [[nodiscard]] std::shared_ptr<const TextBitmap> bitmapOf(const overlay::TextStep& step);

    double scale_;
    std::int32_t nativeHeight_;
    TextRasterizer& rasterizer_;
    /// The texts of the last drawing: those that stay are neither drawn nor compared again.
    std::vector<CachedText> texts_;
    std::vector<CachedText> nextTexts_;
};

}  // namespace platform::x11
