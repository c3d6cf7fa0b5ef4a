#pragma once

#import <CoreGraphics/CoreGraphics.h>

#include "base/geometry.h"

/// Points and rectangles, unchanged: each keeps the coordinate space that it came with. Any thread.
namespace platform::macos {

inline base::Point pointFrom(CGPoint point) {
    return {point.x, point.y};
}

inline base::Rect rectFrom(CGRect rect) {
    return {{rect.origin.x, rect.origin.y}, {rect.size.width, rect.size.height}};
}

inline CGPoint cgPointFrom(const base::Point& point) {
    return CGPointMake(point.x, point.y);
}

inline CGRect cgRectFrom(const base::Rect& rect) {
    return CGRectMake(rect.origin.x, rect.origin.y, rect.size.width, rect.size.height);
}

}  // namespace platform::macos
