#include "platform/tesseract/glyph_shape.h"

namespace platform::tesseract {

namespace {

/// Of the strongest ink in the box.
constexpr double shapeInk = 0.5;
constexpr int weakestInk = 14;

}  // namespace

GlyphShape shapeIn(const InkPlane& ink, const Box& box, int baseline) {
    int strongest = 0;
    for (int y = box.top; y < box.bottom; ++y) {
        for (int x = box.left; x < box.right; ++x) {
            strongest = std::max<int>(strongest, ink.at(x, y));
        }
    }
    const double threshold = std::max<double>(weakestInk, shapeInk * strongest);
    Box inked{box.right, box.bottom, box.left, box.top};
    for (int y = box.top; y < box.bottom; ++y) {
        for (int x = box.left; x < box.right; ++x) {
            if (ink.at(x, y) >= threshold) {
                inked = inked.united({x, y, x + 1, y + 1});
            }
        }
    }
    GlyphShape shape;
    if (inked.right <= inked.left) {
        return shape;
    }
    shape.width = inked.width();
    shape.rise = baseline - inked.top;
    for (int y = inked.top; y < inked.bottom; ++y) {
        for (int x = inked.left; x < inked.right; ++x) {
            shape.pixels.push_back(ink.at(x, y) >= threshold ? 1 : 0);
        }
    }
    return shape;
}

}  // namespace platform::tesseract
