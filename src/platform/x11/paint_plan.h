#pragma once

#include <cstdint>
#include <vector>

#include "platform/x11/native_geometry.h"
#include "platform/x11/overlay_figure.h"

namespace platform::x11 {

/// Alpha, red, green, blue from the highest byte down, the colours multiplied with the alpha.
using ArgbPixel = std::uint32_t;

/// What a window shows at a place that is about to be painted.
enum class Ground {
    /// Its background: the overlay was transparent there.
    bare,
    /// Something of the overlay.
    painted,
};

/// What to paint so that a window shows a drawing: pixels of the overlay alone, to be laid over
/// whatever its background is. Areas and tiles never overlap.
struct PaintPlan {
    /// A rectangle of one colour.
    struct Area {
        NativeRect rect;
        ArgbPixel pixel = 0;
        Ground ground = Ground::painted;
        friend bool operator==(const Area&, const Area&) = default;
    };
    /// A rectangle with a pixel of its own for each place: round corners and text.
    struct Tile {
        NativeRect rect;
        std::vector<ArgbPixel> pixels;
        Ground ground = Ground::painted;
        friend bool operator==(const Tile&, const Tile&) = default;
    };
    std::vector<Area> areas;
    std::vector<Tile> tiles;

    [[nodiscard]] bool isEmpty() const { return areas.empty() && tiles.empty(); }
    /// The smallest rectangle that holds all of it.
    [[nodiscard]] NativeRect bounds() const;
};

/// What all figures together make of the pixel (x, y).
ArgbPixel pixelAt(const std::vector<Figure>& figures, int x, int y);

/// What turns `before` into `after` inside of `clip`, and nothing that stays as it is.
///
/// The edges of all figures cut the window into cells of a grid. Inside of a cell every figure has
/// one and the same coverage, unless the cell holds a round corner or text; so a cell is compared,
/// and painted, as a whole, however large it is.
PaintPlan planChange(const std::vector<Figure>& before, const std::vector<Figure>& after,
                     const NativeRect& clip);

/// What paints `figures` inside of `clip`, where the window may show anything of the overlay
/// except in places where `figures` is transparent.
PaintPlan planRepair(const std::vector<Figure>& figures, const NativeRect& clip);

}  // namespace platform::x11
