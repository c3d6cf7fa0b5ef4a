#include "platform/macos/cocoa_pointer.h"

#import <AppKit/AppKit.h>

#include "platform/macos/core_foundation_handle.h"
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
    const Handle<CGEventRef> event{CGEventCreate(nullptr)};
    return event ? std::optional(pointFrom(CGEventGetLocation(event.get()))) : std::nullopt;
}

}  // namespace platform::macos
