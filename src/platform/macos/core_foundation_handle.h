#pragma once

#import <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <type_traits>

namespace platform::macos {

struct ReleaseReference {
    void operator()(CFTypeRef reference) const { CFRelease(reference); }
};

/// One reference that a call with Create or Copy in its name has given. Any thread.
template <typename Reference>
using Handle = std::unique_ptr<std::remove_pointer_t<Reference>, ReleaseReference>;

}  // namespace platform::macos
