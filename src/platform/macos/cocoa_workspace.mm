#include "platform/macos/cocoa_workspace.h"

#import <AppKit/AppKit.h>

#include "platform/macos/foundation_text.h"

namespace platform::macos {

std::optional<overlay::Application> CocoaWorkspace::frontmostApplication() {
    NSRunningApplication* const application = NSWorkspace.sharedWorkspace.frontmostApplication;
    if (application == nil) {
        return std::nullopt;
    }
    overlay::Application front{.processIdentifier = application.processIdentifier,
                               .localizedName = std::nullopt};
    if (NSString* const name = application.localizedName) {
        front.localizedName = textFrom(name);
    }
    return front;
}

}  // namespace platform::macos
