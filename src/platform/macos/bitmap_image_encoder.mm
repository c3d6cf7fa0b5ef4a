#include "platform/macos/bitmap_image_encoder.h"

#import <AppKit/AppKit.h>

#include "platform/macos/point_sized_image.h"

namespace platform::macos {

base::Result<std::vector<std::uint8_t>> BitmapImageEncoder::encodePng(const base::Image& image,
                                                                      base::Size pointSize) {
    // The forms on the way are as large as the picture.
    @autoreleasepool {
        NSData* const tiff = pointSizedImage(image, pointSize).TIFFRepresentation;
        NSBitmapImageRep* const bitmap =
            tiff == nil ? nil : [[NSBitmapImageRep alloc] initWithData:tiff];
        // The pixels stay as they are; this is the resolution that goes along.
        bitmap.size = NSMakeSize(pointSize.width, pointSize.height);
        NSData* const png = [bitmap representationUsingType:NSBitmapImageFileTypePNG
                                                 properties:@{}];
        if (png == nil) {
            return base::Error{base::ErrorKind::failed, "The system cannot encode the picture."};
        }
        const auto* const bytes = static_cast<const std::uint8_t*>(png.bytes);
        return std::vector<std::uint8_t>(bytes, bytes + png.length);
    }
}

}  // namespace platform::macos
