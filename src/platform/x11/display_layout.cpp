#include "platform/x11/display_layout.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

namespace platform::x11 {

namespace {

std::int64_t distanceOutside(std::int32_t value, std::int32_t start, std::int32_t length) {
    const std::int64_t below = std::int64_t{start} - value;
    const std::int64_t above = std::int64_t{value} - (std::int64_t{start} + length - 1);
    return std::max<std::int64_t>({below, above, 0});
}

std::int64_t squaredDistance(const NativeRect& rect, NativePoint pixel) {
    const std::int64_t dx = distanceOutside(pixel.x, rect.x, rect.width);
    const std::int64_t dy = distanceOutside(pixel.y, rect.y, rect.height);
    return dx * dx + dy * dy;
}

// A display is at most 65535 pixels wide; anything far beyond that is as good as off the display,
// and must not overflow.
std::int32_t nearestPixel(double value) {
    constexpr double limit = 1 << 24;
    return static_cast<std::int32_t>(std::lround(std::clamp(value, -limit, limit)));
}

/// A length in points, to a 2^30th of one. So what is computed from such lengths (at most 2^17 of
/// them, with 53 bits) is exact, and what touches in pixels touches in points: with unrounded
/// quotients a selection up to the edge of its display was seen to reach a 2^44th of a point into
/// the next one.
double points(double pixels, double scale) {
    constexpr double parts = 1 << 30;
    return std::round(pixels / scale * parts) / parts;
}

double farEdge(std::int32_t position, std::int32_t length) {
    return position == length - 1 ? length : position;
}

}  // namespace

DisplayLayout::DisplayLayout(std::vector<NativeDisplay> displays) : displays_(std::move(displays)) {
    const auto primary = std::find_if(displays_.begin(), displays_.end(), [](const auto& display) {
        return display.role == DisplayRole::primary;
    });
    if (primary != displays_.end()) {
        std::rotate(displays_.begin(), primary, std::next(primary));
    }
    for (auto& display : displays_) {
        display.role =
            &display == &displays_.front() ? DisplayRole::primary : DisplayRole::secondary;
    }
}

std::vector<base::Screen> DisplayLayout::screens() const {
    std::vector<base::Screen> screens;
    screens.reserve(displays_.size());
    for (const auto& display : displays_) {
        screens.push_back({display.id, screenFrame(display), display.scale, display.colorSpace});
    }
    return screens;
}

const NativeDisplay* DisplayLayout::find(base::DisplayID id) const {
    const auto found = std::find_if(displays_.begin(), displays_.end(),
                                    [&](const auto& display) { return display.id == id; });
    return found == displays_.end() ? nullptr : &*found;
}

const NativeDisplay* DisplayLayout::displayAt(NativePoint pixel) const {
    const auto nearest = std::min_element(
        displays_.begin(), displays_.end(), [&](const auto& first, const auto& second) {
            return squaredDistance(first.native, pixel) < squaredDistance(second.native, pixel);
        });
    return nearest == displays_.end() ? nullptr : &*nearest;
}

NativePoint DisplayLayout::origin() const {
    if (displays_.empty()) {
        return {};
    }
    return {displays_.front().native.x, displays_.front().native.y};
}

base::Rect DisplayLayout::topLeftFrame(const NativeDisplay& display) const {
    return {{static_cast<double>(display.native.x - origin().x),
             static_cast<double>(display.native.y - origin().y)},
            {points(display.native.width, display.scale),
             points(display.native.height, display.scale)}};
}

base::Rect DisplayLayout::screenFrame(const NativeDisplay& display) const {
    base::Rect frame = topLeftFrame(display);
    frame.origin.y = primaryHeight() - frame.maxY();
    return frame;
}

double DisplayLayout::primaryHeight() const {
    return displays_.empty() ? 0.0 : topLeftFrame(displays_.front()).size.height;
}

base::Point DisplayLayout::topLeftFromNative(NativePoint pixel) const {
    return topLeftFromNative(NativeRect{pixel.x, pixel.y, 0, 0}).origin;
}

base::Rect DisplayLayout::topLeftFromNative(const NativeRect& frame) const {
    const NativeDisplay* display =
        displayAt({frame.x + frame.width / 2, frame.y + frame.height / 2});
    if (display == nullptr) {
        return {{static_cast<double>(frame.x), static_cast<double>(frame.y)},
                {static_cast<double>(frame.width), static_cast<double>(frame.height)}};
    }
    const base::Point corner = topLeftFrame(*display).origin;
    const double left = points(frame.x - display->native.x, display->scale);
    const double top = points(frame.y - display->native.y, display->scale);
    const double right = points(frame.x + frame.width - display->native.x, display->scale);
    const double bottom = points(frame.y + frame.height - display->native.y, display->scale);
    return {{corner.x + left, corner.y + top}, {right - left, bottom - top}};
}

base::Point DisplayLayout::viewFromPixel(const NativeDisplay& display, NativePoint pixel) {
    return {points(farEdge(pixel.x, display.native.width), display.scale),
            points(display.native.height, display.scale) -
                points(farEdge(pixel.y, display.native.height), display.scale)};
}

NativeRect DisplayLayout::nativeFromScreen(const NativeDisplay& display,
                                           const base::Rect& rect) const {
    const base::Point corner = screenFrame(display).origin;
    return nativeFromView(display,
                          {{rect.origin.x - corner.x, rect.origin.y - corner.y}, rect.size});
}

NativeRect DisplayLayout::nativeFromView(const NativeDisplay& display, const base::Rect& rect) {
    const double height = display.native.height / display.scale;
    return nativeFromDisplayTopLeft(display, {{rect.minX(), height - rect.maxY()}, rect.size});
}

NativeRect DisplayLayout::nativeFromDisplayTopLeft(const NativeDisplay& display,
                                                   const base::Rect& rect) {
    const std::int32_t left = nearestPixel(rect.minX() * display.scale);
    const std::int32_t top = nearestPixel(rect.minY() * display.scale);
    const std::int32_t right = nearestPixel(rect.maxX() * display.scale);
    const std::int32_t bottom = nearestPixel(rect.maxY() * display.scale);
    return {display.native.x + left, display.native.y + top, right - left, bottom - top};
}

}  // namespace platform::x11
