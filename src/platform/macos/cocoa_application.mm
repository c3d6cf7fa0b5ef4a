#include "platform/macos/cocoa_application.h"

#import <AppKit/AppKit.h>

#include "platform/macos/main_thread.h"

namespace platform::macos {

static_assert(static_cast<NSInteger>(app::ActivationPolicy::regular) ==
              NSApplicationActivationPolicyRegular);
static_assert(static_cast<NSInteger>(app::ActivationPolicy::accessory) ==
              NSApplicationActivationPolicyAccessory);

struct CocoaApplication::Subscription {
    id<NSObject> token;
};

CocoaApplication::CocoaApplication(app::NotificationCenter& notificationCenter) {
    app::NotificationCenter* const center = &notificationCenter;
    id<NSObject> token = [NSNotificationCenter.defaultCenter
        addObserverForName:NSApplicationDidBecomeActiveNotification
                    object:nil
                     queue:NSOperationQueue.mainQueue
                usingBlock:^(NSNotification*) {
                  center->post(app::applicationDidBecomeActiveNotification);
                }];
    subscription_ = std::make_unique<Subscription>(Subscription{token});
}

CocoaApplication::~CocoaApplication() {
    [NSNotificationCenter.defaultCenter removeObserver:subscription_->token];
}

void CocoaApplication::setActivationPolicy(app::ActivationPolicy policy) {
    [NSApplication.sharedApplication
        setActivationPolicy:static_cast<NSApplicationActivationPolicy>(policy)];
}

void CocoaApplication::terminate() {
    runOnMainThread([] { [NSApplication.sharedApplication terminate:nil]; });
}

}  // namespace platform::macos
