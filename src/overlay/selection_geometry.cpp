#include "overlay/selection_geometry.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace overlay {

namespace {

/// A window must exceed this on both sides to be offered, so that tool tips and the like are not.
constexpr double smallWindowSize = 50;
/// A region must exceed this on both sides to be captured, so that a click is no selection.
constexpr double smallRegionSize = 2;
constexpr double centreMarkReach = 4;
constexpr double labelDistance = 5;
constexpr double labelMarginX = 5;
constexpr double labelMarginY = 2;

struct Span {
    double origin = 0;
    double extent = 0;
};

Span cornerSpan(double start, double current) {
    return {std::min(start, current), std::abs(current - start)};
}

Span centreSpan(double start, double current) {
    const double distance = std::abs(current - start);
    return {start - distance, distance + distance};
}

bool isLargerThan(const base::Rect& rect, double size) {
    return rect.size.width > size && rect.size.height > size;
}

bool isOffered(const WindowCandidate& window, std::int32_t targetPID) {
    return window.ownerPID == targetPID && window.windowLayer == 0 &&
           isLargerThan(window.frame, smallWindowSize);
}

}  // namespace

void SelectionState::press(base::Point point) {
    if (isWindowMode) {
        return;
    }
    startPoint = point;
    currentPoint = point;
}

void SelectionState::drag(base::Point point, OptionKey optionKey) {
    if (isWindowMode) {
        return;
    }
    currentPoint = point;
    isCenterBasedResize = optionKey == OptionKey::held;
    updateSelectionRect();
}

void SelectionState::updateSelectionRect() {
    if (!startPoint || !currentPoint) {
        selectionRect.reset();
        return;
    }
    const auto span = isCenterBasedResize ? centreSpan : cornerSpan;
    const Span horizontal = span(startPoint->x, currentPoint->x);
    const Span vertical = span(startPoint->y, currentPoint->y);
    selectionRect = {{horizontal.origin, vertical.origin}, {horizontal.extent, vertical.extent}};
}

void SelectionState::toggleWindowMode() {
    isWindowMode = !isWindowMode;
    selectionRect.reset();
    startPoint.reset();
    currentPoint.reset();
    if (!isWindowMode) {
        selectedWindowID.reset();
        selectedWindowRect.reset();
    }
}

Redraw SelectionState::applyWindowList(const std::vector<WindowCandidate>& list,
                                       std::optional<std::int32_t> targetPID,
                                       std::optional<base::Point> pointer) {
    availableWindows.clear();
    if (!targetPID) {
        return Redraw::notNeeded;
    }
    std::copy_if(list.begin(), list.end(), std::back_inserter(availableWindows),
                 [&](const WindowCandidate& window) { return isOffered(window, *targetPID); });
    return pointer ? updateHoveredWindow(*pointer) : Redraw::notNeeded;
}

Redraw SelectionState::updateHoveredWindow(base::Point pointer) {
    if (!isWindowMode) {
        return Redraw::notNeeded;
    }
    const auto hit =
        std::find_if(availableWindows.begin(), availableWindows.end(),
                     [&](const WindowCandidate& window) { return window.frame.contains(pointer); });
    if (hit == availableWindows.end() || hit->windowID == selectedWindowID) {
        return Redraw::notNeeded;
    }
    selectedWindowID = hit->windowID;
    selectedWindowRect = hit->frame;
    return Redraw::needed;
}

std::optional<std::uint32_t> SelectionState::finishSelection() const {
    return isWindowMode && selectedWindowRect ? selectedWindowID : std::nullopt;
}

std::optional<base::Rect> SelectionState::capturableRegion() const {
    return selectionRect && isLargerThan(*selectionRect, smallRegionSize) ? selectionRect
                                                                          : std::nullopt;
}

base::Rect viewToScreen(const base::Rect& rect, base::Point displayOrigin) {
    return {{rect.origin.x + displayOrigin.x, rect.origin.y + displayOrigin.y}, rect.size};
}

base::Rect screenToView(const base::Rect& rect, base::Point displayOrigin) {
    return {{rect.origin.x - displayOrigin.x, rect.origin.y - displayOrigin.y}, rect.size};
}

base::Rect topLeftToScreen(const base::Rect& rect, double primaryHeight) {
    return {{rect.origin.x, primaryHeight - (rect.origin.y + rect.size.height)}, rect.size};
}

std::array<Segment, 2> guideLines(const base::Rect& region) {
    return {{{{region.minX(), region.midY()}, {region.maxX(), region.midY()}},
             {{region.midX(), region.minY()}, {region.midX(), region.maxY()}}}};
}

std::array<Segment, 2> centreMark(const base::Rect& region) {
    const base::Point centre{region.midX(), region.midY()};
    return {{{{centre.x - centreMarkReach, centre.y}, {centre.x + centreMarkReach, centre.y}},
             {{centre.x, centre.y - centreMarkReach}, {centre.x, centre.y + centreMarkReach}}}};
}

std::string sizeLabelText(const base::Rect& region) {
    const auto whole = [](double length) {
        return std::to_string(static_cast<std::int64_t>(length));
    };
    return whole(region.size.width) + " x " + whole(region.size.height);
}

base::Rect sizeLabelFrame(const base::Rect& region, base::Size textSize) {
    return {{region.maxX() + labelDistance, region.midY() - textSize.height / 2},
            {textSize.width + 2 * labelMarginX, textSize.height + 2 * labelMarginY}};
}

base::Point sizeLabelTextOrigin(const base::Rect& labelFrame) {
    return {labelFrame.minX() + labelMarginX, labelFrame.minY() + labelMarginY};
}

}  // namespace overlay
