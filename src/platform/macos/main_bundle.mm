#include "platform/macos/main_bundle.h"

#import <Foundation/Foundation.h>

#include "platform/macos/foundation_text.h"

namespace platform::macos {

base::Bundle mainBundle() {
    NSBundle* const bundle = NSBundle.mainBundle;
    return {.identifier = knownTextFrom(bundle.bundleIdentifier),
            .location = textFrom(bundle.bundlePath),
            .icon = textFrom([bundle pathForResource:@"app.lumaframe.Lumaframe" ofType:@"png"])};
}

}  // namespace platform::macos
