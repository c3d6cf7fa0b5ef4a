#pragma once

#import <AppKit/AppKit.h>

#include "base/geometry.h"
#include "base/image.h"

namespace platform::macos {

/// An image object over the same pixels, as large as `pointSize` in points; none for an empty
/// picture. Any thread.
NSImage* _Nullable pointSizedImage(const base::Image& image, const base::Size& pointSize);

}  // namespace platform::macos
