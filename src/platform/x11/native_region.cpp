#include "platform/x11/native_region.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace platform::x11 {

NativeRect intersection(const NativeRect& first, const NativeRect& second) {
    const auto left = std::max(first.x, second.x);
    const auto top = std::max(first.y, second.y);
    const auto right = std::min(first.x + first.width, second.x + second.width);
    const auto bottom = std::min(first.y + first.height, second.y + second.height);
    if (left >= right || top >= bottom) {
        return {};
    }
    return {left, top, right - left, bottom - top};
}

NativeRect boundingBox(const NativeRect& first, const NativeRect& second) {
    if (first.isEmpty() || second.isEmpty()) {
        return first.isEmpty() ? second : first;
    }
    const auto left = std::min(first.x, second.x);
    const auto top = std::min(first.y, second.y);
    return {left, top, std::max(first.x + first.width, second.x + second.width) - left,
            std::max(first.y + first.height, second.y + second.height) - top};
}

NativeRegion::NativeRegion(const std::vector<NativeRect>& rects) {
    std::copy_if(rects.begin(), rects.end(), std::back_inserter(parts_),
                 [](const NativeRect& rect) { return !rect.isEmpty(); });
}

void NativeRegion::subtract(const NativeRect& rect) {
    std::vector<NativeRect> left;
    left.reserve(parts_.size() + 3);
    for (const NativeRect& part : parts_) {
        const NativeRect hole = intersection(part, rect);
        if (hole.isEmpty()) {
            left.push_back(part);
            continue;
        }
        const auto partBottom = part.y + part.height;
        const auto partRight = part.x + part.width;
        const auto holeBottom = hole.y + hole.height;
        const auto holeRight = hole.x + hole.width;
        const std::array<NativeRect, 4> around{
            NativeRect{part.x, part.y, part.width, hole.y - part.y},
            NativeRect{part.x, holeBottom, part.width, partBottom - holeBottom},
            NativeRect{part.x, hole.y, hole.x - part.x, hole.height},
            NativeRect{holeRight, hole.y, partRight - holeRight, hole.height}};
        std::copy_if(around.begin(), around.end(), std::back_inserter(left),
                     [](const NativeRect& piece) { return !piece.isEmpty(); });
    }
    parts_ = std::move(left);
}

bool NativeRegion::intersects(const NativeRect& rect) const {
    return std::any_of(parts_.begin(), parts_.end(),
                       [&](const NativeRect& part) { return !intersection(part, rect).isEmpty(); });
}

}  // namespace platform::x11
