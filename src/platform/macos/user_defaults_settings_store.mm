#include "platform/macos/user_defaults_settings_store.h"

#import <Foundation/Foundation.h>

#include <cstdint>
#include <utility>

#include "platform/macos/foundation_text.h"
#include "platform/macos/main_thread.h"

/// Hears of each change of the keys that it was added for, on any thread.
@interface LumaframeDefaultsObserver : NSObject
@property(nonatomic, copy) void (^onChange)(NSString* key);
@end

@implementation LumaframeDefaultsObserver
- (void)observeValueForKeyPath:(NSString*)keyPath
                      ofObject:(id)object
                        change:(NSDictionary<NSKeyValueChangeKey, id>*)change
                       context:(void*)context {
    if (keyPath != nil) {
        self.onChange(keyPath);
    }
}
@end

namespace platform::macos {

namespace {

/// Numbers with a fraction, dates, data and collections are no settings.
std::optional<app::SettingsValue> valueFrom(NSObject* stored) {
    if ([stored isKindOfClass:[NSString class]]) {
        return textFrom(static_cast<NSString*>(stored));
    }
    if (![stored isKindOfClass:[NSNumber class]]) {
        return std::nullopt;
    }
    NSNumber* const number = static_cast<NSNumber*>(stored);
    if (CFGetTypeID((__bridge CFTypeRef)number) == CFBooleanGetTypeID()) {
        return static_cast<bool>(number.boolValue);
    }
    if (CFNumberIsFloatType((__bridge CFNumberRef)number) != 0) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(number.longLongValue);
}

struct Writer {
    NSString* key;

    void operator()(bool value) const {
        [NSUserDefaults.standardUserDefaults setBool:value ? YES : NO forKey:key];
    }
    void operator()(std::int64_t value) const {
        [NSUserDefaults.standardUserDefaults setInteger:static_cast<NSInteger>(value) forKey:key];
    }
    void operator()(const std::string& value) const {
        [NSUserDefaults.standardUserDefaults setObject:stringFrom(value) forKey:key];
    }
};

}  // namespace

struct UserDefaultsSettingsStore::Observer {
    LumaframeDefaultsObserver* object = [[LumaframeDefaultsObserver alloc] init];
};

UserDefaultsSettingsStore::UserDefaultsSettingsStore() : observer_(std::make_unique<Observer>()) {
    auto note = std::function<void(const std::string&)>(
        alive_.guard([this](auto&& key) { noteChange(key); }));
    observer_->object.onChange = ^(NSString* key) {
      runOnMainThread([note, key = textFrom(key)] { note(key); });
    };
}

UserDefaultsSettingsStore::~UserDefaultsSettingsStore() {
    for (const auto& [key, value] : known_) {
        [NSUserDefaults.standardUserDefaults removeObserver:observer_->object
                                                 forKeyPath:stringFrom(key)];
    }
}

std::optional<app::SettingsValue> UserDefaultsSettingsStore::read(const std::string& key) {
    observe(key);
    return valueFrom([NSUserDefaults.standardUserDefaults objectForKey:stringFrom(key)]);
}

base::Status UserDefaultsSettingsStore::write(const std::string& key,
                                              const app::SettingsValue& value) {
    observe(key);
    // First, so that hearing of it is no news.
    known_[key] = value;
    std::visit(Writer{stringFrom(key)}, value);
    return base::Nothing{};
}

void UserDefaultsSettingsStore::setChangeHandler(
    std::function<void(const std::string& key)> handler) {
    changeHandler_ = std::move(handler);
}

void UserDefaultsSettingsStore::observe(const std::string& key) {
    if (known_.contains(key)) {
        return;
    }
    NSString* const name = stringFrom(key);
    known_[key] = valueFrom([NSUserDefaults.standardUserDefaults objectForKey:name]);
    // Observing a key is what tells of other processes' changes too.
    [NSUserDefaults.standardUserDefaults addObserver:observer_->object
                                          forKeyPath:name
                                             options:0
                                             context:nullptr];
}

void UserDefaultsSettingsStore::noteChange(const std::string& key) {
    auto value = valueFrom([NSUserDefaults.standardUserDefaults objectForKey:stringFrom(key)]);
    if (value == known_[key]) {
        return;
    }
    known_[key] = std::move(value);
    if (changeHandler_) {
        changeHandler_(key);
    }
}

}  // namespace platform::macos
