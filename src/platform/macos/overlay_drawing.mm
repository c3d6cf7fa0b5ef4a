#include "platform/macos/overlay_drawing.h"

#include <variant>

#include "platform/macos/core_graphics_geometry.h"
#include "platform/macos/foundation_text.h"

namespace platform::macos {

namespace {

NSColor* colorFrom(const overlay::Color& color) {
    return [NSColor colorWithSRGBRed:color.red green:color.green blue:color.blue alpha:color.alpha];
}

NSFont* fontFrom(const overlay::Font& font) {
    switch (font.weight) {
        case overlay::FontWeight::regular:
            return [NSFont systemFontOfSize:font.size weight:NSFontWeightRegular];
        case overlay::FontWeight::medium:
            return [NSFont systemFontOfSize:font.size weight:NSFontWeightMedium];
    }
    return [NSFont systemFontOfSize:font.size];
}

NSBezierPath* pathFrom(const base::Rect& rect, double cornerRadius) {
    if (cornerRadius <= 0) {
        return [NSBezierPath bezierPathWithRect:cgRectFrom(rect)];
    }
    return [NSBezierPath bezierPathWithRoundedRect:cgRectFrom(rect)
                                           xRadius:cornerRadius
                                           yRadius:cornerRadius];
}

/// Between a save and a restore of the graphics state, so that no step sees what another one set.
/// Main thread.
struct StepPainter {
    void operator()(const overlay::FillStep& step) const {
        [colorFrom(step.color) setFill];
        [pathFrom(step.rect, step.cornerRadius) fill];
    }
    void operator()(const overlay::ClearStep& step) const {
        NSGraphicsContext.currentContext.compositingOperation = NSCompositingOperationClear;
        [NSColor.clearColor setFill];
        [pathFrom(step.rect, step.cornerRadius) fill];
    }
    void operator()(const overlay::StrokeStep& step) const {
        NSBezierPath* const path = pathFrom(step.rect, step.cornerRadius);
        path.lineWidth = step.lineWidth;
        [colorFrom(step.color) setStroke];
        [path stroke];
    }
    void operator()(const overlay::SegmentStep& step) const {
        NSBezierPath* const path = [NSBezierPath bezierPath];
        [path moveToPoint:cgPointFrom(step.from)];
        [path lineToPoint:cgPointFrom(step.to)];
        path.lineWidth = step.lineWidth;
        [colorFrom(step.color) setStroke];
        [path stroke];
    }
    void operator()(const overlay::TextStep& step) const {
        [stringFrom(step.text) drawAtPoint:cgPointFrom(step.origin)
                            withAttributes:@{
                                NSFontAttributeName : fontFrom(step.font),
                                NSForegroundColorAttributeName : colorFrom(step.color)
                            }];
    }
};

}  // namespace

base::Size measureText(const std::string& text, const overlay::Font& font) {
    const NSSize size =
        [stringFrom(text) sizeWithAttributes:@{NSFontAttributeName : fontFrom(font)}];
    return {size.width, size.height};
}

void drawSteps(const std::vector<overlay::DrawingStep>& steps) {
    for (const overlay::DrawingStep& step : steps) {
        [NSGraphicsContext saveGraphicsState];
        std::visit(StepPainter{}, step);
        [NSGraphicsContext restoreGraphicsState];
    }
}

}  // namespace platform::macos
