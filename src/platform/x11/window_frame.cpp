#include "platform/x11/window_frame.h"

#include "platform/x11/native_region.h"

namespace platform::x11 {

namespace {

NativeRect expanded(const NativeRect& rect, const FrameExtents& extents) {
    return {rect.x - extents.left, rect.y - extents.top, rect.width + extents.left + extents.right,
            rect.height + extents.top + extents.bottom};
}

}  // namespace

NativeRect visiblePart(const NativeRect& frame, const FrameExtents& extents) {
    const NativeRect visible{frame.x + extents.left, frame.y + extents.top,
                             frame.width - extents.left - extents.right,
                             frame.height - extents.top - extents.bottom};
    return visible.isEmpty() ? frame : visible;
}

NativeRect WindowFrame::topLevel() const {
    return expanded(visible, margins);
}

WindowFrame frameOf(const WindowMeasures& measures) {
    const NativeRect& topLevel = measures.topLevel;
    NativeRect frame = topLevel;
    FrameExtents decoration{};
    if (measures.client && measures.decoration) {
        // A shaded window is smaller than its client.
        const NativeRect decorated =
            intersection(expanded(*measures.client, *measures.decoration), topLevel);
        if (!decorated.isEmpty()) {
            frame = decorated;
            decoration = *measures.decoration;
        }
    }
    const NativeRect visible = visiblePart(frame, measures.ownShadow);
    return {.visible = visible,
            .margins = {.left = visible.x - topLevel.x,
                        .right = topLevel.x + topLevel.width - visible.x - visible.width,
                        .top = visible.y - topLevel.y,
                        .bottom = topLevel.y + topLevel.height - visible.y - visible.height},
            .decoration = decoration,
            .shadow = visible == frame ? ShadowSource::none : ShadowSource::window};
}

}  // namespace platform::x11
