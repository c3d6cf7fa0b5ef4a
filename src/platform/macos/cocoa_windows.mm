#include "platform/macos/cocoa_windows.h"

#import <AppKit/AppKit.h>

#include <bit>

#include "platform/macos/platform_constants.h"

namespace platform::macos {

namespace {

static_assert(windowMaterial == NSVisualEffectMaterialUnderWindowBackground);

NSView* viewOf(std::uintptr_t view) {
    return (__bridge NSView*)std::bit_cast<void*>(view);
}

NSWindow* _Nullable windowOf(std::uintptr_t view) {
    return viewOf(view).window;
}

}  // namespace

void activateWindow(std::uintptr_t view) {
    [NSApplication.sharedApplication activateIgnoringOtherApps:YES];
    [windowOf(view) makeKeyAndOrderFront:nil];
}

void setWindowLevel(std::uintptr_t view, app::WindowLevel level) {
    windowOf(view).level = static_cast<NSWindowLevel>(level);
}

void hideTitleBar(std::uintptr_t view) {
    NSWindow* const window = windowOf(view);
    window.titleVisibility = NSWindowTitleHidden;
    window.titlebarAppearsTransparent = YES;
}

void showMaterialBehind(std::uintptr_t view) {
    NSView* const content = viewOf(view);
    // The window's own view, since the toolkit wants to be the content view itself.
    NSView* const frame = content.superview;
    NSVisualEffectView* const effect = [[NSVisualEffectView alloc] initWithFrame:frame.bounds];
    effect.autoresizingMask = NSViewWidthSizable | NSViewHeightSizable;
    effect.material = static_cast<NSVisualEffectMaterial>(windowMaterial);
    effect.blendingMode = NSVisualEffectBlendingModeBehindWindow;
    [frame addSubview:effect positioned:NSWindowBelow relativeTo:content];
}

}  // namespace platform::macos
