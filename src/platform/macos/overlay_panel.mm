#include "platform/macos/overlay_panel.h"

#include "base/log.h"
#include "platform/macos/platform_constants.h"

namespace {

using namespace platform::macos;

static_assert(panelStyleMask ==
              (NSWindowStyleMaskNonactivatingPanel | NSWindowStyleMaskFullSizeContentView));
static_assert(panelBacking == NSBackingStoreBuffered);
static_assert(panelCollectionBehavior ==
              (NSWindowCollectionBehaviorCanJoinAllSpaces | NSWindowCollectionBehaviorIgnoresCycle |
               NSWindowCollectionBehaviorFullScreenAuxiliary));

}  // namespace

@implementation LumaframeOverlayPanel

- (instancetype)initWithFrame:(NSRect)frame
                configuration:(const overlay::PanelConfiguration&)configuration {
    self = [super initWithContentRect:frame
                            styleMask:configuration.styleMask
                              backing:static_cast<NSBackingStoreType>(configuration.backing)
                                defer:configuration.isDeferred ? YES : NO];
    if (self != nil) {
        [self setFrame:frame display:YES];
        self.opaque = configuration.isOpaque ? YES : NO;
        self.backgroundColor = NSColor.clearColor;
        self.level = configuration.level;
        self.ignoresMouseEvents = configuration.ignoresMouseEvents ? YES : NO;
        self.collectionBehavior = configuration.collectionBehavior;
        self.hidesOnDeactivate = configuration.hidesOnDeactivate ? YES : NO;
        self.releasedWhenClosed = configuration.isReleasedWhenClosed ? YES : NO;
    }
    return self;
}

- (instancetype)initWithContentRect:(NSRect)rect
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backing
                              defer:(BOOL)defer {
    base::fatalError("The window of the overlay is made from a display only.");
}

- (BOOL)canBecomeKeyWindow {
    return YES;
}

- (BOOL)canBecomeMainWindow {
    return NO;
}

- (void)cancelOperation:(id)sender {
    if (self.input != nullptr) {
        self.input->cancelOperation();
    }
}

- (void)keyDown:(NSEvent*)event {
    if (self.input == nullptr ||
        self.input->keyDown(event.keyCode) == overlay::KeyVerdict::unhandled) {
        [super keyDown:event];
    }
}
@end
