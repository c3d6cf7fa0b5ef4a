#pragma once

#import <Foundation/Foundation.h>

#include <memory>

namespace platform::macos {

/// Keeps an object of the system's in a value of the program's. Any thread.
inline std::shared_ptr<const void> backingFrom(NSObject* _Nonnull object) {
    return {(__bridge_retained CFTypeRef)object, [](CFTypeRef kept) { CFRelease(kept); }};
}

}  // namespace platform::macos
