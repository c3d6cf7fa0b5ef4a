#include "platform/macos/cocoa_screen.h"

#include "platform/macos/core_graphics_geometry.h"
#include "platform/macos/foundation_text.h"

namespace platform::macos {

namespace {

/// Null when any link of the chain from the screen to the name is missing.
std::shared_ptr<const base::ColorSpace> colorSpaceOf(NSScreen* screen) {
    const CGColorSpaceRef space = screen.colorSpace.CGColorSpace;
    NSString* const name =
        space == nullptr ? nil : (__bridge_transfer NSString*)CGColorSpaceCopyName(space);
    if (name == nil) {
        return nullptr;
    }
    return std::make_shared<const base::ColorSpace>(
        base::ColorSpace{.name = textFrom(name), .iccProfile = {}});
}

}  // namespace

base::Screen screenFrom(NSScreen* screen) {
    NSNumber* const number = screen.deviceDescription[@"NSScreenNumber"];
    return {.displayID = static_cast<base::DisplayID>(number.longLongValue),
            .frame = rectFrom(screen.frame),
            .backingScaleFactor = screen.backingScaleFactor,
            .colorSpace = colorSpaceOf(screen)};
}

}  // namespace platform::macos
