#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/geometry.h"
#include "overlay/overlay_surface.h"
#include "overlay/selection_geometry.h"

namespace overlay {

/// What a selection view shows at one moment, and how far its figures reach.
struct SelectionDrawing {
    /// Empty: the view shows nothing at all.
    std::vector<DrawingStep> steps;
    /// Everything but the dimming of the whole view; view space.
    base::Rect figures;
};

/// The box of one line of text in a font, in points.
using TextMeasure = std::function<base::Size(const std::string&, const Font&)>;

/// Nothing before the first drag; then the view dimmed, with the selected region cut out, framed
/// and labelled, or with the hovered window highlighted. `displayFrame` is the view's display in
/// screen space, `primaryHeight` the height of the primary display.
SelectionDrawing drawSelection(const SelectionState& state, const base::Rect& displayFrame,
                               double primaryHeight, const TextMeasure& measure);

/// The part of the view `bounds` in which two drawings differ.
base::Rect changedRect(const SelectionDrawing& before, const SelectionDrawing& after,
                       const base::Rect& bounds);

}  // namespace overlay
