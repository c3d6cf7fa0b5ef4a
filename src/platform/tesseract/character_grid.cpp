#include "platform/tesseract/character_grid.h"

#include <cmath>
#include <limits>

namespace platform::tesseract {

CharacterGrid::CharacterGrid(const std::vector<Glyph>& glyphs, double pitch, double letterHeight)
    : pitch_(pitch) {
    fit(glyphs, letterHeight);
    fill(glyphs);
}

void CharacterGrid::fit(const std::vector<Glyph>& glyphs, double letterHeight) {
    const double start = glyphs.front().box.left;
    const double roughPitch = pitch_;
    double least = std::numeric_limits<double>::max();
    for (int step = -5; step <= 5; ++step) {
        const double pitch = roughPitch * (1 + 0.002 * step);
        for (double phase = 0; phase < pitch; phase += pitch / 16) {
            double error = 0;
            for (const Glyph& glyph : glyphs) {
                if (glyph.box.height() < 0.5 * letterHeight ||
                    glyph.box.width() > 1.3 * roughPitch) {
                    continue;
                }
                const double cell = (glyph.box.centerX() - start - phase) / pitch;
                const double off = cell - std::round(cell);
                error += off * off;
            }
            if (error < least) {
                least = error;
                pitch_ = pitch;
                origin_ = start + phase;
            }
        }
    }
}

void CharacterGrid::fill(const std::vector<Glyph>& glyphs) {
    for (const Glyph& glyph : glyphs) {
        const double from = (glyph.box.left - origin_) / pitch_ + 0.5;
        const double to = (glyph.box.right - origin_) / pitch_ + 0.5;
        const int first = static_cast<int>(std::floor(from));
        const int last = static_cast<int>(std::floor(to - 1e-6));
        if (first == last || glyph.box.width() < 1.25 * pitch_) {
            const int middle = static_cast<int>(std::floor((from + to) / 2));
            put(first == last ? first : middle, glyph.box.left, glyph.box.right);
            continue;
        }
        // Characters that touch each other: a share of the glyph for each cell.
        for (int cell = first; cell <= last; ++cell) {
            const double begin = std::max(from, static_cast<double>(cell));
            const double end = std::min(to, cell + 1.0);
            if (end - begin > 0.35) {
                put(cell, static_cast<int>(origin_ + (begin - 0.5) * pitch_),
                    static_cast<int>(origin_ + (end - 0.5) * pitch_));
            }
        }
    }
}

void CharacterGrid::put(int cell, int left, int right) {
    const auto [place, isNew] = cells_.try_emplace(cell, Cell{left, right});
    if (!isNew) {
        place->second.left = std::min(place->second.left, left);
        place->second.right = std::max(place->second.right, right);
    }
}

}  // namespace platform::tesseract
