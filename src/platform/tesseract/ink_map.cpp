#include "platform/tesseract/ink_map.h"

#include "platform/tesseract/connected_components.h"
#include "platform/tesseract/thread_pair.h"

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
/// About, of a letter.
constexpr int pixelsOfMark = 40;

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

/// The strongest ink of each tile of one row of them.
void findStrongest(const InkPlane& ink, int tileRow, InkPlane& strongest) {
    const int bottom = std::min(ink.height(), (tileRow + 1) * tileHeight);
    for (int y = tileRow * tileHeight; y < bottom; ++y) {
        const std::uint8_t* row = ink.row(y);
        for (int column = 0; column < strongest.width(); ++column) {
            const int left = column * tileWidth;
            std::uint8_t& most = strongest.at(column, tileRow);
            most = std::max(
                most, *std::max_element(row + left, row + std::min(ink.width(), left + tileWidth)));
        }
    }
}

/// What may be ink of the tiles of one row of them.
void markFaint(const InkPlane& ink, int tileRow, const InkPlane& strongest, Mask& faint) {
    const int bottom = std::min(ink.height(), (tileRow + 1) * tileHeight);
    for (int y = tileRow * tileHeight; y < bottom; ++y) {
        const std::uint8_t* row = ink.row(y);
        std::uint8_t* isFaint = faint.row(y);
        for (int column = 0; column < strongest.width(); ++column) {
            const int share = paleShare * strongest.at(column, tileRow) / 100;
            const int least = std::max(weakestInk, share);
            const int right = std::min(ink.width(), (column + 1) * tileWidth);
            for (int x = column * tileWidth; x < right; ++x) {
                isFaint[x] = row[x] >= least ? 1 : 0;
            }
        }
    }
}

/// Takes what is weak beside the rest of its mark out of the mask.
void thin(const ConnectedComponents& marks, const Component& mark, const InkPlane& ink,
          const InkPlane& strongest, Mask& mask) {
    int own = 0;
    for (const auto* run = marks.runsBegin(mark); run != marks.runsEnd(mark); ++run) {
        const std::uint8_t* row = ink.row(run->y);
        own = std::max<int>(own, *std::max_element(row + run->left, row + run->right));
    }
    for (const auto* run = marks.runsBegin(mark); run != marks.runsEnd(mark); ++run) {
        for (int x = run->left; x < run->right; ++x) {
            const int nearby = strongest.at(x / tileWidth, run->y / tileHeight);
            if (ink.at(x, run->y) < inkShare * std::min(own, nearby)) {
                mask.at(x, run->y) = 0;
            }
        }
    }
}

}  // namespace

InkPlane measureInk(const ColorPlane& page, const BackgroundModel& background) {
    InkPlane ink(page.width(), page.height());
    const auto measureRow = [&](int y) {
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
    };
    shareBands(page.height(), page.width(), [&](int first, int end) {
        for (int y = first; y < end; ++y) {
            measureRow(y);
        }
    });
    return ink;
}

Mask binarize(const InkPlane& ink) {
    const int tileRows = (ink.height() + tileHeight - 1) / tileHeight;
    InkPlane strongest((ink.width() + tileWidth - 1) / tileWidth, tileRows);
    Mask faint(ink.width(), ink.height());
    shareBands(tileRows, ink.width() * tileHeight, [&](int first, int end) {
        for (int tileRow = first; tileRow < end; ++tileRow) {
            findStrongest(ink, tileRow, strongest);
            markFaint(ink, tileRow, strongest, faint);
        }
    });
    const ConnectedComponents marks(faint);
    shareBands(static_cast<int>(marks.all().size()), pixelsOfMark, [&](int first, int end) {
        for (int index = first; index < end; ++index) {
            thin(marks, marks.all()[static_cast<std::size_t>(index)], ink, strongest, faint);
        }
    });
    return faint;
}

}  // namespace platform::tesseract
