#pragma once

#include <vector>

#include "drawn_page.h"
#include "platform/tesseract/connected_components.h"
#include "platform/tesseract/text_line.h"

namespace platform::tesseract {

/// Of the boxes that stand for letters, pixels.
inline constexpr double drawnLetterHeight = 10;

/// A page on which boxes stand for letters.
class DrawnLetters {
  public:
    DrawnLetters(int width, int height)
        : page_(width, height, {255, 255, 255}), ink_(width, height), mask_(width, height) {}

    /// A part of the page that has another background; comes before what stands on it.
    void drawSurface(const Box& box, Color color) { fill(page_, box, color); }
    void draw(const Box& box, Color color = {0, 0, 0}) {
        fill(page_, box, color);
        for (int y = box.top; y < box.bottom; ++y) {
            for (int x = box.left; x < box.right; ++x) {
                ink_.at(x, y) = 255;
                mask_.at(x, y) = 1;
            }
        }
    }
    /// Letters from `left` on, every eight pixels, that stand on `baseline`.
    void write(int left, int baseline, int count) {
        for (int index = 0; index < count; ++index) {
            const int x = left + 8 * index;
            draw({x, baseline - static_cast<int>(drawnLetterHeight), x + 6, baseline});
        }
    }
    [[nodiscard]] std::vector<Glyph> glyphs() const {
        const ConnectedComponents components(mask_);
        std::vector<Glyph> glyphs;
        for (std::size_t index = 0; index < components.all().size(); ++index) {
            const Component& component = components.all()[index];
            glyphs.push_back({component.box, component.pixelCount, index});
        }
        return glyphs;
    }
    [[nodiscard]] const ColorPlane& page() const { return page_; }
    [[nodiscard]] const InkPlane& ink() const { return ink_; }
    [[nodiscard]] const Mask& mask() const { return mask_; }
    InkPlane& ink() { return ink_; }
    Mask& mask() { return mask_; }

  private:
    ColorPlane page_;
    InkPlane ink_;
    Mask mask_;
};

}  // namespace platform::tesseract
