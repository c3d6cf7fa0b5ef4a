#include "platform/macos/cocoa_pointer.h"

#import <AppKit/AppKit.h>

#include "platform/macos/core_graphics_geometry.h"

namespace platform::macos {

void CocoaPointer::setCursor(overlay::Cursor cursor) {
    switch (cursor) {
        case overlay::Cursor::arrow:
            [NSCursor.arrowCursor set];
            return;
        case overlay::Cursor::crosshair:
            [NSCursor.crosshairCursor set];
            return;
        case overlay::Cursor::pointingHand:
            [NSCursor.pointingHandCursor set];
            return;
    }
}

std::optional<base::Point> CocoaPointer::location() {
    const CGEventRef event = CGEventCreate(nullptr);
    if (event == nullptr) {
        return std::nullopt;
    }
    const base::Point location = pointFrom(CGEventGetLocation(event));
    CFRelease(event);
    return location;
}

}  // namespace platform::macos
