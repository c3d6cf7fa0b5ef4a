#pragma once

#import <AppKit/AppKit.h>

#include <string>
#include <vector>

#include "base/geometry.h"
#include "overlay/overlay_surface.h"

namespace platform::macos {

/// The box of one line of text, in points. Main thread.
base::Size measureText(const std::string& text, const overlay::Font& font);

/// Paints the steps in their order into the current graphics context. Main thread, inside of a
/// view's drawing.
void drawSteps(const std::vector<overlay::DrawingStep>& steps);

}  // namespace platform::macos
