#pragma once

#import <AppKit/AppKit.h>

#include <vector>

#include "overlay/overlay_surface.h"

/// The content of one panel of the overlay: reports its mouse events and paints what it is given.
/// Not flipped: its coordinates are view space. Main thread.
@interface LumaframeOverlayView : NSView
/// Null when nobody answers any more.
@property(nonatomic, assign) overlay::SurfaceInput* _Nullable input;
- (nonnull instancetype)initWithFrame:(NSRect)frame
                      trackingOptions:(NSTrackingAreaOptions)options NS_DESIGNATED_INITIALIZER;
- (nonnull instancetype)initWithFrame:(NSRect)frame;
- (nullable instancetype)initWithCoder:(nonnull NSCoder*)coder NS_UNAVAILABLE;
- (void)present:(const std::vector<overlay::DrawingStep>&)steps changed:(NSRect)changed;
@end
