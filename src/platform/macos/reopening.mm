#include "platform/macos/reopening.h"

#import <AppKit/AppKit.h>

/// Main thread.
@interface LumaframeReopeningDelegate : NSObject <NSApplicationDelegate>
@property(nonatomic, copy) void (^onReopen)(void);
@end

@implementation LumaframeReopeningDelegate
- (BOOL)applicationShouldHandleReopen:(NSApplication*)application hasVisibleWindows:(BOOL)visible {
    if (self.onReopen != nil) {
        self.onReopen();
    }
    return NO;
}
@end

namespace platform::macos {

struct Reopening::Delegate {
    LumaframeReopeningDelegate* object = [[LumaframeReopeningDelegate alloc] init];
};

Reopening::Reopening() : delegate_(std::make_unique<Delegate>()) {
    NSApplication.sharedApplication.delegate = delegate_->object;
}

Reopening::~Reopening() = default;

void Reopening::setHandler(std::function<void()> onReopen) {
    delegate_->object.onReopen = ^{
      onReopen();
    };
}

}  // namespace platform::macos
