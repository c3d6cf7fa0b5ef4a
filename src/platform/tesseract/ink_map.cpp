#include "platform/tesseract/ink_map.h"

#include "platform/tesseract/connected_components.h"

namespace platform::tesseract {

namespace {

/// Sum over the channels: what a surface's own tolerance explains.
constexpr int noise = 6;
/// Surfaces that differ this much (sum over the channels) have an edge between them.
constexpr int differentSurfaces = 40;
constexpr int edgeReach = 2;
/// A line or two of text, so that one strong word does not silence a weak one far away.
constexpr int tileWidth = 48;
constexpr int tileHeight = 24;
constexpr double inkShare = 0.35;
constexpr int weakestInk = 20;
/// In hundredths of the strongest ink nearby: less than this is no writing but noise.
constexpr int paleShare = 12;

bool isBetweenSurfaces(const BackgroundModel& background, int x, int y) {
    const ColorPlane& colors = background.colors();
    const int bottom = std::min(colors.height() - 1, y + edgeReach);
    const int right = std::min(colors.width() - 1, x + edgeReach);
    const Color* first = nullptr;
    for (int row = std::max(0, y - edgeReach); row <= bottom; ++row) {
        const std::uint16_t* distances = background.distances(row);
        const Color* colorsOfRow = colors.row(row);
        for (int column = std::max(0, x - edgeReach); column <= right; ++column) {
            if (distances[column] != 0) {
                continue;
            }
            const Color& color = colorsOfRow[column];
            if (first == nullptr) {
                first = &color;
            } else if (distance(*first, color) > differentSurfaces) {
                return true;
            }
        }
    }
    return false;
}

/// The strongest ink of each tile.
InkPlane strongestOfTiles(const InkPlane& ink) {
    const int columns = (ink.width() + tileWidth - 1) / tileWidth;
    const int rows = (ink.height() + tileHeight - 1) / tileHeight;
    InkPlane strongest(columns, rows);
    for (int y = 0; y < ink.height(); ++y) {
        const std::uint8_t* row = ink.row(y);
        for (int column = 0; column < columns; ++column) {
            const int left = column * tileWidth;
            std::uint8_t& most = strongest.at(column, y / tileHeight);
            most = std::max(
                most, *std::max_element(row + left, row + std::min(ink.width(), left + tileWidth)));
        }
    }
    return strongest;
}

}  // namespace

InkPlane measureInk(const ColorPlane& page, const BackgroundModel& background) {
    InkPlane ink(page.width(), page.height());
    for (int y = 0; y < page.height(); ++y) {
        const Color* colors = page.row(y);
        const Color* surfaces = background.colors().row(y);
        const std::uint16_t* distances = background.distances(y);
        std::uint8_t* inkOfRow = ink.row(y);
        for (int x = 0; x < page.width(); ++x) {
            // What belongs to a surface has its colour.
            if (distances[x] == 0 || colors[x] == surfaces[x]) {
                continue;
            }
            const int difference = distance(colors[x], surfaces[x]);
            if (difference <= noise) {
                continue;
            }
            if (background.hasSurfaces() && isBetweenSurfaces(background, x, y)) {
                continue;
            }
            inkOfRow[x] = static_cast<std::uint8_t>(std::min(255, difference / 2));
        }
    }
    return ink;
}

Mask binarize(const InkPlane& ink) {
    const InkPlane strongest = strongestOfTiles(ink);
    Mask faint(ink.width(), ink.height());
    for (int y = 0; y < ink.height(); ++y) {
        for (int left = 0; left < ink.width(); left += tileWidth) {
            const int share = paleShare * strongest.at(left / tileWidth, y / tileHeight) / 100;
            const int least = std::max(weakestInk, share);
            for (int x = left; x < std::min(ink.width(), left + tileWidth); ++x) {
                faint.at(x, y) = ink.at(x, y) >= least ? 1 : 0;
            }
        }
    }
    const ConnectedComponents marks(faint);
    for (const Component& mark : marks.all()) {
        int own = 0;
        for (const auto* run = marks.runsBegin(mark); run != marks.runsEnd(mark); ++run) {
            for (int x = run->left; x < run->right; ++x) {
                own = std::max<int>(own, ink.at(x, run->y));
            }
        }
        for (const auto* run = marks.runsBegin(mark); run != marks.runsEnd(mark); ++run) {
            for (int x = run->left; x < run->right; ++x) {
                const int nearby = strongest.at(x / tileWidth, run->y / tileHeight);
                if (ink.at(x, run->y) < inkShare * std::min(own, nearby)) {
                    faint.at(x, run->y) = 0;
                }
            }
        }
    }
    return faint;
}

}  // namespace platform::tesseract
