#import <AppKit/AppKit.h>
#import <Carbon/Carbon.h>

#include "app/windows.h"
#include "platform/macos/platform_constants.h"

// The codes behind which the program has its names of keys are those of the system's symbols.
#define KEY(symbol, code, name) static_assert((symbol) == (code));
#include "key_names.inc"
#undef KEY

// Levels are asserted here and not in the adapters: the system's own headers may compute them.
static_assert(platform::macos::panelLevel == NSScreenSaverWindowLevel);
static_assert(static_cast<NSWindowLevel>(app::WindowLevel::normal) == NSNormalWindowLevel);
static_assert(static_cast<NSWindowLevel>(app::WindowLevel::floating) == NSFloatingWindowLevel);
