#include "platform/macos/point_sized_image.h"

#include "platform/macos/core_foundation_handle.h"
#include "platform/macos/image_conversion.h"

namespace platform::macos {

NSImage* pointSizedImage(const base::Image& image, const base::Size& pointSize) {
    const Handle<CGImageRef> picture{createImage(image)};
    if (!picture) {
        return nil;
    }
    return [[NSImage alloc] initWithCGImage:picture.get()
                                       size:NSMakeSize(pointSize.width, pointSize.height)];
}

}  // namespace platform::macos
