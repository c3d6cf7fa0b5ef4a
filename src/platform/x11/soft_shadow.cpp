#include "platform/x11/soft_shadow.h"

#include <cmath>
#include <cstdint>
#include <numbers>
#include <vector>

namespace platform::x11 {

namespace {

constexpr double strength = 0.45;
constexpr double blurPoints = 8;
constexpr double dropPoints = 8;

/// How much of a blurred stretch from `begin` to `end` falls on each pixel of a line.
std::vector<double> profile(int length, double begin, double end, double blur) {
    const auto inside = [&](double edge, double place) {
        return 0.5 * (1 + std::erf((place - edge) / (blur * std::numbers::sqrt2)));
    };
    std::vector<double> shares(static_cast<std::size_t>(length));
    for (int pixel = 0; pixel < length; ++pixel) {
        const double centre = pixel + 0.5;
        shares[static_cast<std::size_t>(pixel)] = inside(begin, centre) - inside(end, centre);
    }
    return shares;
}

}  // namespace

SoftShadow::SoftShadow(double scale)
    : blur_(blurPoints * scale),
      // Three times the width of the blur: 0.13 % of the strength are left there.
      reach_(static_cast<int>(std::ceil(3 * blur_))),
      drop_(static_cast<int>(std::lround(dropPoints * scale))) {}

NativeRect SoftShadow::frameAround(const NativeRect& window) const {
    return {window.x - reach_, window.y - reach_ + drop_, window.width + 2 * reach_,
            window.height + 2 * reach_};
}

void SoftShadow::draw(const Canvas& canvas, const NativeRect& window) const {
    const auto columns = profile(canvas.width, window.x, window.x + window.width, blur_);
    const auto rows =
        profile(canvas.height, window.y + drop_, window.y + drop_ + window.height, blur_);
    for (int y = 0; y < canvas.height; ++y) {
        const double rowStrength = 255 * strength * rows[static_cast<std::size_t>(y)];
        std::uint8_t* alpha = canvas.row(y) + 3;
        for (int x = 0; x < canvas.width; ++x, alpha += 4) {
            if (*alpha != 255) {
                // The shadow is black, so that only the alpha changes.
                const double shadow = rowStrength * columns[static_cast<std::size_t>(x)];
                *alpha =
                    static_cast<std::uint8_t>(std::lround(*alpha + shadow * (255 - *alpha) / 255));
            }
        }
    }
}

}  // namespace platform::x11
