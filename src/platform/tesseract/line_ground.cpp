#include "platform/tesseract/line_ground.h"

namespace platform::tesseract {

namespace {

/// Blending and shadows reach this far from a letter, in pixels.
constexpr int reach = 2;
/// How far around a line its ground is looked at.
constexpr int margin = 4;
/// One pixel in four is enough to know a surface.
constexpr int step = 2;

bool isInked(const Mask& mask, int x, int y) {
    const int bottom = std::min(mask.height() - 1, y + reach);
    const int right = std::min(mask.width() - 1, x + reach);
    for (int row = std::max(0, y - reach); row <= bottom; ++row) {
        for (int column = std::max(0, x - reach); column <= right; ++column) {
            if (mask.at(column, row) != 0) {
                return true;
            }
        }
    }
    return false;
}

}  // namespace

double flatShareAround(const TextLine& line, const BackgroundModel& background, const Mask& mask) {
    Box box = line.segments.front().box;
    for (const Segment& segment : line.segments) {
        box = box.united(segment.box);
    }
    const int bottom = std::min(mask.height(), box.bottom + margin);
    const int right = std::min(mask.width(), box.right + margin);
    long all = 0;
    long flat = 0;
    for (int y = std::max(0, box.top - margin); y < bottom; y += step) {
        for (int x = std::max(0, box.left - margin); x < right; x += step) {
            if (!isInked(mask, x, y)) {
                ++all;
                flat += background.isSurface(x, y) ? 1 : 0;
            }
        }
    }
    return all == 0 ? 1 : static_cast<double>(flat) / static_cast<double>(all);
}

}  // namespace platform::tesseract
