#pragma once

#include <random>
#include <string>
#include <vector>

#include "overlay/overlay_surface.h"
#include "platform/text_rasterizer.h"

/// Drawings like those of a selection, for the tests of the painter.
namespace overlay_drawings {

/// Each letter a box of its own pattern: a text without a font.
class BlockRasterizer final : public platform::TextRasterizer {
  public:
    base::Size measure(const std::string& text, const overlay::Font& font) override {
        return {static_cast<double>(text.size()) * font.size * 0.6, font.size * 1.2};
    }
    platform::TextBitmap rasterize(const std::string& text, const overlay::Font& font,
                                   double scale) override {
        ++rasterized;
        const base::Size size = measure(text, font);
        platform::TextBitmap bitmap;
        bitmap.width = static_cast<int>(size.width * scale);
        bitmap.height = static_cast<int>(size.height * scale);
        bitmap.offsetX = 1;
        bitmap.offsetY = -bitmap.height;
        for (int i = 0; i < bitmap.width * bitmap.height; ++i) {
            const auto letter = static_cast<unsigned char>(
                text[static_cast<std::size_t>(i) % std::max<std::size_t>(text.size(), 1)]);
            bitmap.coverage.push_back(static_cast<std::uint8_t>(letter * (i % 7)));
        }
        return bitmap;
    }
    int rasterized = 0;
};

/// What a drag shows: dimming, the hole, its border, the guides, the centre mark and the label.
inline std::vector<overlay::DrawingStep> selection(base::Size view, base::Rect rect,
                                                   platform::TextRasterizer& rasterizer) {
    const overlay::Color white{1, 1, 1, 1};
    const overlay::Color guide{1, 1, 1, 0.3};
    const double x = rect.midX();
    const double y = rect.midY();
    const std::string text = std::to_string(static_cast<int>(rect.size.width)) + " x " +
                             std::to_string(static_cast<int>(rect.size.height));
    const overlay::Font font{10, overlay::FontWeight::medium};
    const base::Size box = rasterizer.measure(text, font);
    const base::Rect label{{rect.maxX() + 5, y - box.height / 2}, {box.width + 10, box.height + 4}};
    return {
        overlay::FillStep{{{0, 0}, view}, 0, {0, 0, 0, 0.4}},
        overlay::ClearStep{rect, 5},
        overlay::StrokeStep{rect, 5, 2, {0.5, 0, 1, 1}},
        overlay::SegmentStep{{rect.minX(), y}, {rect.maxX(), y}, 0.3, guide},
        overlay::SegmentStep{{x, rect.minY()}, {x, rect.maxY()}, 0.3, guide},
        overlay::SegmentStep{{x - 4, y}, {x + 4, y}, 1, white},
        overlay::SegmentStep{{x, y - 4}, {x, y + 4}, 1, white},
        overlay::FillStep{label, 4, {0, 0, 0, 0.6}},
        overlay::TextStep{text, {label.minX() + 5, label.minY() + 2}, font, white},
    };
}

/// The highlight of a window.
inline std::vector<overlay::DrawingStep> highlight(base::Size view, base::Rect rect) {
    return {overlay::FillStep{{{0, 0}, view}, 0, {0, 0, 0, 0.4}},
            overlay::FillStep{rect, 0, {0.2, 0.6, 1, 0.5}}};
}

/// A rectangle whose corners are pixels of a display with this scale, also off its edges, also of
/// no width.
inline base::Rect randomRect(base::Size view, double scale, std::mt19937& random) {
    const auto pixel = [&](double length) {
        const int last = static_cast<int>(length * scale);
        return std::uniform_int_distribution<int>(-20, last + 20)(random) / scale;
    };
    const double x = pixel(view.width);
    const double y = pixel(view.height);
    return {{x, y}, {std::abs(pixel(view.width) - x), std::abs(pixel(view.height) - y)}};
}

}  // namespace overlay_drawings
