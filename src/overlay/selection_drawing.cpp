#include "overlay/selection_drawing.h"

#include <array>

namespace overlay {

namespace {

constexpr Color dimming{0, 0, 0, 0.4};
constexpr Color windowHighlight{0.2, 0.6, 1.0, 0.5};
constexpr Color borderColor{0.5, 0.0, 1.0, 1.0};
constexpr Color guideColor{1, 1, 1, 0.3};
constexpr Color markColor{1, 1, 1, 1};
constexpr Color labelBackground{0, 0, 0, 0.6};
constexpr Color labelTextColor{1, 1, 1, 1};
constexpr Font labelFont{10, FontWeight::medium};
constexpr double borderWidth = 2;
constexpr double guideWidth = 0.3;
constexpr double markWidth = 1;

void addSegments(std::vector<DrawingStep>& steps, const std::array<Segment, 2>& segments,
                 double lineWidth, const Color& color) {
    for (const Segment& segment : segments) {
        steps.emplace_back(SegmentStep{segment.from, segment.to, lineWidth, color});
    }
}

void drawRegion(SelectionDrawing& drawing, const base::Rect& region, const TextMeasure& measure) {
    auto& steps = drawing.steps;
    steps.emplace_back(ClearStep{region, selectionCornerRadius});
    steps.emplace_back(StrokeStep{region, selectionCornerRadius, borderWidth, borderColor});
    addSegments(steps, guideLines(region), guideWidth, guideColor);
    addSegments(steps, centreMark(region), markWidth, markColor);
    const std::string text = sizeLabelText(region);
    const base::Rect label = sizeLabelFrame(region, measure(text, labelFont));
    steps.emplace_back(FillStep{label, sizeLabelCornerRadius, labelBackground});
    steps.emplace_back(TextStep{text, sizeLabelTextOrigin(label), labelFont, labelTextColor});
    // The centre mark reaches out of a region that is smaller than it.
    const base::Rect mark{{region.midX() - 5, region.midY() - 5}, {10, 10}};
    drawing.figures = unionOf(unionOf(grown(region, borderWidth), mark), grown(label, 1));
}

}  // namespace

SelectionDrawing drawSelection(const SelectionState& state, const base::Rect& displayFrame,
                               double primaryHeight, const TextMeasure& measure) {
    SelectionDrawing drawing;
    if (!state.isWindowMode && !state.selectionRect) {
        return drawing;
    }
    drawing.steps.emplace_back(FillStep{{{0, 0}, displayFrame.size}, 0, dimming});
    if (!state.isWindowMode) {
        drawRegion(drawing, *state.selectionRect, measure);
    } else if (state.selectedWindowID && state.selectedWindowRect) {
        const base::Rect highlight = screenToView(
            topLeftToScreen(*state.selectedWindowRect, primaryHeight), displayFrame.origin);
        drawing.steps.emplace_back(FillStep{highlight, 0, windowHighlight});
        drawing.figures = grown(highlight, 1);
    }
    return drawing;
}

base::Rect changedRect(const SelectionDrawing& before, const SelectionDrawing& after,
                       const base::Rect& bounds) {
    if (before.steps.empty() != after.steps.empty()) {
        return bounds;
    }
    return intersection(unionOf(before.figures, after.figures), bounds);
}

}  // namespace overlay
