#include "platform/x11/capture_region.h"

#include <cmath>
#include <cstdint>
#include <limits>

namespace platform::x11 {

namespace {

constexpr double highest = std::numeric_limits<std::int16_t>::max();

/// A length that was divided by the scale before comes back a hair below the whole pixel.
constexpr double hair = 1e-6;

std::optional<std::int32_t> whole(double value) {
    if (!(std::abs(value) <= highest)) {
        return std::nullopt;
    }
    return static_cast<std::int32_t>(std::floor(value + hair));
}

std::optional<std::int32_t> lengthOf(std::optional<std::int64_t> configured, double points,
                                     double scale) {
    const auto length =
        configured ? whole(static_cast<double>(*configured)) : whole(points * scale);
    return length && *length > 0 ? length : std::nullopt;
}

}  // namespace

std::optional<NativeRect> captureRegion(const NativeDisplay& display,
                                        const capture::StreamConfiguration& configuration) {
    const base::Rect all{
        {0, 0}, {display.native.width / display.scale, display.native.height / display.scale}};
    const base::Rect source = configuration.sourceRect.value_or(all);
    const auto x = whole(source.minX() * display.scale);
    const auto y = whole(source.minY() * display.scale);
    const auto width = lengthOf(configuration.width, source.size.width, display.scale);
    const auto height = lengthOf(configuration.height, source.size.height, display.scale);
    if (!x || !y || !width || !height) {
        return std::nullopt;
    }
    return NativeRect{display.native.x + *x, display.native.y + *y, *width, *height};
}

}  // namespace platform::x11
