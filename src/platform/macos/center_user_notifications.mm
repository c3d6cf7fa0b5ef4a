#include "platform/macos/center_user_notifications.h"

#import <UserNotifications/UserNotifications.h>

#include "platform/macos/foundation_text.h"
#include "platform/macos/platform_constants.h"

namespace platform::macos {

static_assert(notificationOptions == (UNAuthorizationOptionAlert | UNAuthorizationOptionSound));

void CenterUserNotifications::requestAuthorization(
    std::function<void(capture::Authorization)> completion) {
    const std::weak_ptr<const char> owner = alive_;
    void (^const answer)(BOOL, NSError*) = ^(BOOL granted, NSError*) {
      if (const auto held = owner.lock()) {
          completion(granted ? capture::Authorization::granted : capture::Authorization::denied);
      }
    };
    if (NSBundle.mainBundle.bundleIdentifier == nil) {
        // The centre would end such a process.
        dispatch_async(dispatch_get_main_queue(), ^{
          answer(NO, nil);
        });
        return;
    }
    [UNUserNotificationCenter.currentNotificationCenter
        requestAuthorizationWithOptions:notificationOptions
                      completionHandler:answer];
}

void CenterUserNotifications::add(const capture::NotificationRequest& request) {
    UNMutableNotificationContent* const content = [[UNMutableNotificationContent alloc] init];
    content.title = stringFrom(request.title);
    content.body = stringFrom(request.body);
    content.sound = UNNotificationSound.defaultSound;
    [UNUserNotificationCenter.currentNotificationCenter
        addNotificationRequest:[UNNotificationRequest
                                   requestWithIdentifier:stringFrom(request.identifier)
                                                 content:content
                                                 trigger:nil]
         withCompletionHandler:nil];
}

std::string CenterUserNotifications::makeIdentifier() {
    return textFrom(NSUUID.UUID.UUIDString);
}

}  // namespace platform::macos
