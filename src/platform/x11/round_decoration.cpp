#include "platform/x11/round_decoration.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace platform::x11 {

namespace {

/// Of no theme is it larger, at scale 2.
constexpr int largestRadius = 32;
/// A pixel is looked at in so many rows and columns.
constexpr int samples = 8;
constexpr int whole = samples * samples;
/// Colours that differ by no more are the same one: the rim of a circle shines through a little.
constexpr int tolerance = 3;

/// How many samples of a pixel, counted from the corner inwards, lie in the circle.
int coverage(int x, int y, double radius) {
    int inside = 0;
    for (int row = 0; row < samples; ++row) {
        for (int column = 0; column < samples; ++column) {
            const double across = radius - (x + (column + 0.5) / samples);
            const double down = radius - (y + (row + 0.5) / samples);
            const bool isBeside = across <= 0 || down <= 0;
            inside += isBeside || std::hypot(across, down) <= radius ? 1 : 0;
        }
    }
    return inside;
}

class UpperCorner {
  public:
    enum class Side { left, right };

    UpperCorner(const Canvas& canvas, const NativeRect& frame, Side side)
        : canvas_(canvas), frame_(frame), side_(side) {}

    [[nodiscard]] std::uint8_t* at(int x, int y) const {
        const int column = side_ == Side::left ? x : frame_.width - 1 - x;
        return canvas_.row(frame_.y + y) + static_cast<std::size_t>(frame_.x + column) * 4;
    }
    /// Inside the circle, where the title bar shows.
    [[nodiscard]] const std::uint8_t* barColor(double radius) const {
        const int inner = static_cast<int>(std::ceil(radius));
        return at(inner, inner);
    }
    [[nodiscard]] bool fits(double radius) const {
        const std::uint8_t* const bar = barColor(radius);
        const int side = static_cast<int>(std::ceil(radius)) + 2;
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                if (coverage(x, y, radius) == whole && !isSame(at(x, y), bar)) {
                    return false;
                }
            }
        }
        return !isSame(at(0, 0), bar);
    }

  private:
    static bool isSame(const std::uint8_t* first, const std::uint8_t* second) {
        return std::equal(first, first + 3, second,
                          [](int one, int other) { return std::abs(one - other) <= tolerance; });
    }

    const Canvas& canvas_;
    const NativeRect& frame_;
    Side side_;
};

}  // namespace

std::optional<double> decorationRadius(const Canvas& canvas, const NativeRect& frame,
                                       std::int32_t barHeight) {
    const int reach = std::min({largestRadius, barHeight - 2, frame.width / 2 - 2});
    const UpperCorner left(canvas, frame, UpperCorner::Side::left);
    const UpperCorner right(canvas, frame, UpperCorner::Side::right);
    // Whole steps would cut into the rim or leave something of what is behind.
    for (double radius = 1.5; radius <= reach; radius += 0.5) {
        if (left.fits(radius) && right.fits(radius)) {
            return radius;
        }
    }
    return std::nullopt;
}

void cutRoundDecoration(const Canvas& canvas, const NativeRect& frame, double radius) {
    const int side = static_cast<int>(std::ceil(radius));
    for (const auto end : {UpperCorner::Side::left, UpperCorner::Side::right}) {
        const UpperCorner corner(canvas, frame, end);
        const std::uint8_t* const bar = corner.barColor(radius);
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                const int covered = coverage(x, y, radius);
                std::uint8_t* const pixel = corner.at(x, y);
                for (int channel = 0; channel < 3; ++channel) {
                    pixel[channel] = static_cast<std::uint8_t>(bar[channel] * covered / whole);
                }
                pixel[3] = static_cast<std::uint8_t>(255 * covered / whole);
            }
        }
    }
}

}  // namespace platform::x11
