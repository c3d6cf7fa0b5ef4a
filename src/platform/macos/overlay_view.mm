#include "platform/macos/overlay_view.h"

#include "base/log.h"
#include "platform/macos/core_graphics_geometry.h"
#include "platform/macos/overlay_drawing.h"
#include "platform/macos/platform_constants.h"

static_assert(platform::macos::panelTrackingOptions ==
              (NSTrackingMouseEnteredAndExited | NSTrackingMouseMoved | NSTrackingActiveAlways |
               NSTrackingInVisibleRect));
static_assert(overlay::optionModifierFlag == NSEventModifierFlagOption);

@interface LumaframeOverlayView ()
- (void)addOwnTrackingArea;
- (overlay::MouseEvent)mouseEventFrom:(NSEvent*)event;
@end

@implementation LumaframeOverlayView {
    NSTrackingAreaOptions trackingOptions_;
    std::vector<overlay::DrawingStep> steps_;
}

- (instancetype)initWithFrame:(NSRect)frame trackingOptions:(NSTrackingAreaOptions)options {
    self = [super initWithFrame:frame];
    if (self != nil) {
        trackingOptions_ = options;
        [self addOwnTrackingArea];
    }
    return self;
}

- (instancetype)initWithFrame:(NSRect)frame {
    return [self initWithFrame:frame trackingOptions:platform::macos::panelTrackingOptions];
}

- (instancetype)initWithCoder:(NSCoder*)coder {
    base::fatalError("init(coder:) has not been implemented");
}

- (void)addOwnTrackingArea {
    [self addTrackingArea:[[NSTrackingArea alloc] initWithRect:self.bounds
                                                       options:trackingOptions_
                                                         owner:self
                                                      userInfo:nil]];
}

- (void)updateTrackingAreas {
    [super updateTrackingAreas];
    for (NSTrackingArea* area in self.trackingAreas) {
        [self removeTrackingArea:area];
    }
    [self addOwnTrackingArea];
}

/// No cursor rectangles: the cursor is only ever set explicitly.
- (void)resetCursorRects {
}

- (void)present:(const std::vector<overlay::DrawingStep>&)steps changed:(NSRect)changed {
    steps_ = steps;
    [self setNeedsDisplayInRect:changed];
}

- (void)drawRect:(NSRect)dirtyRect {
    platform::macos::drawSteps(steps_);
}

- (overlay::MouseEvent)mouseEventFrom:(NSEvent*)event {
    const NSPoint location = [self convertPoint:event.locationInWindow fromView:nil];
    return {.location = platform::macos::pointFrom(location),
            .modifierFlags = static_cast<std::uint32_t>(event.modifierFlags)};
}

- (void)mouseEntered:(NSEvent*)event {
    if (self.input != nullptr) {
        self.input->mouseEntered();
    }
}

- (void)mouseExited:(NSEvent*)event {
    if (self.input != nullptr) {
        self.input->mouseExited();
    }
}

- (void)mouseMoved:(NSEvent*)event {
    if (self.input != nullptr) {
        self.input->mouseMoved([self mouseEventFrom:event]);
    }
}

- (void)mouseDown:(NSEvent*)event {
    if (self.input != nullptr) {
        self.input->mouseDown([self mouseEventFrom:event]);
    }
}

- (void)mouseDragged:(NSEvent*)event {
    if (self.input != nullptr) {
        self.input->mouseDragged([self mouseEventFrom:event]);
    }
}

- (void)mouseUp:(NSEvent*)event {
    if (self.input != nullptr) {
        self.input->mouseUp([self mouseEventFrom:event]);
    }
}
@end
