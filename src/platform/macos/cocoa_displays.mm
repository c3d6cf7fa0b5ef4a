#include "platform/macos/cocoa_displays.h"

#import <AppKit/AppKit.h>

#include <utility>

#include "platform/macos/cocoa_screen.h"

namespace platform::macos {

struct CocoaDisplays::Subscription {
    id<NSObject> token;
};

CocoaDisplays::CocoaDisplays() {
    id<NSObject> token = [NSNotificationCenter.defaultCenter
        addObserverForName:NSApplicationDidChangeScreenParametersNotification
                    object:nil
                     queue:NSOperationQueue.mainQueue
                usingBlock:^(NSNotification*) {
                  screensChanged();
                }];
    subscription_ = std::make_unique<Subscription>(Subscription{token});
}

CocoaDisplays::~CocoaDisplays() {
    [NSNotificationCenter.defaultCenter removeObserver:subscription_->token];
}

std::vector<base::Screen> CocoaDisplays::screens() {
    std::vector<base::Screen> list;
    for (NSScreen* screen in NSScreen.screens) {
        list.push_back(screenFrom(screen));
    }
    return list;
}

void CocoaDisplays::setChangeHandler(std::function<void()> handler) {
    changeHandler_ = std::move(handler);
    placements_ = placements();
}

std::vector<CocoaDisplays::Placement> CocoaDisplays::placements() {
    std::vector<Placement> list;
    for (const base::Screen& screen : screens()) {
        list.push_back({screen.displayID, screen.frame, screen.backingScaleFactor});
    }
    return list;
}

void CocoaDisplays::screensChanged() {
    auto now = placements();
    if (std::exchange(placements_, now) == now) {
        return;
    }
    // A copy: the handler may replace itself.
    const auto handler = changeHandler_;
    if (handler) {
        handler();
    }
}

}  // namespace platform::macos
