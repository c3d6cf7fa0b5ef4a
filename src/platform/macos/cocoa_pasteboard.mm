#include "platform/macos/cocoa_pasteboard.h"

#import <AppKit/AppKit.h>

#include "platform/macos/foundation_text.h"
#include "platform/macos/point_sized_image.h"

namespace platform::macos {

void CocoaPasteboard::clearContents() {
    [NSPasteboard.generalPasteboard clearContents];
}

void CocoaPasteboard::writeImage(std::shared_ptr<capture::CapturedImage> image) {
    @autoreleasepool {
        if (NSImage* const object = pointSizedImage(image->pixels(), image->size())) {
            [NSPasteboard.generalPasteboard writeObjects:@[ object ]];
        }
    }
}

void CocoaPasteboard::writeString(const std::string& text) {
    [NSPasteboard.generalPasteboard setString:stringFrom(text) forType:NSPasteboardTypeString];
}

}  // namespace platform::macos
