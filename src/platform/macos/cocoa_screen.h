#pragma once

#import <AppKit/AppKit.h>

#include "base/displays.h"

namespace platform::macos {

/// A display as the program knows it: its frame in screen space, as the system gives it, its scale,
/// and the name of its colour space where it has one. Main thread.
base::Screen screenFrom(NSScreen* _Nonnull screen);

}  // namespace platform::macos
