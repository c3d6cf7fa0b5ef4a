#include "platform/macos/cocoa_windows.h"

#import <AppKit/AppKit.h>

#include <bit>

namespace platform::macos {

namespace {

NSWindow* _Nullable windowOf(std::uintptr_t view) {
    return ((__bridge NSView*)std::bit_cast<void*>(view)).window;
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

}  // namespace platform::macos
