#include "platform/macos/privacy_permissions.h"

#import <AppKit/AppKit.h>
#import <ApplicationServices/ApplicationServices.h>

#include "platform/macos/foundation_text.h"

namespace platform::macos {

bool PrivacyPermissions::canCaptureScreen() const {
    return CGPreflightScreenCaptureAccess();
}

bool PrivacyPermissions::isAccessibilityTrusted() const {
    NSDictionary<NSString*, NSNumber*>* const options =
        @{(__bridge NSString*)kAXTrustedCheckOptionPrompt : @NO};
    return AXIsProcessTrustedWithOptions((__bridge CFDictionaryRef)options) != 0;
}

std::string PrivacyPermissions::screenCaptureLimit() const {
    return {};
}

std::string PrivacyPermissions::accessibilityLimit() const {
    return {};
}

void PrivacyPermissions::openSettingsPage(const std::string& url) {
    if (NSURL* const page = [NSURL URLWithString:stringFrom(url)]) {
        [NSWorkspace.sharedWorkspace openURL:page];
    }
}

}  // namespace platform::macos
