#pragma once

#import <AppKit/AppKit.h>

#include "overlay/overlay_surface.h"

/// The window of the overlay over one display: can become key but never main. Main thread.
@interface LumaframeOverlayPanel : NSPanel
/// Null when nobody answers any more.
@property(nonatomic, assign) overlay::SurfaceInput* _Nullable input;
/// A panel over `frame` in screen space, made as `configuration` says; not shown.
- (nonnull instancetype)initWithFrame:(NSRect)frame
                        configuration:(const overlay::PanelConfiguration&)configuration
    NS_DESIGNATED_INITIALIZER;
- (nonnull instancetype)initWithContentRect:(NSRect)rect
                                  styleMask:(NSWindowStyleMask)style
                                    backing:(NSBackingStoreType)backing
                                      defer:(BOOL)defer NS_UNAVAILABLE;
@end
