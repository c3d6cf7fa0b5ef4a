#pragma once

#import <Foundation/Foundation.h>

#include <optional>
#include <string>

namespace platform::macos {

/// UTF-8; empty for no string. Any thread.
inline std::string textFrom(NSString* _Nullable string) {
    const char* const bytes = string.UTF8String;
    return bytes == nullptr ? std::string() : std::string(bytes);
}

/// UTF-8; none for no string. Any thread.
inline std::optional<std::string> knownTextFrom(NSString* _Nullable string) {
    return string == nil ? std::nullopt : std::optional(textFrom(string));
}

/// Empty for bytes that are no UTF-8. Any thread.
inline NSString* _Nonnull stringFrom(const std::string& text) {
    NSString* const string = [[NSString alloc] initWithBytes:text.data()
                                                      length:text.size()
                                                    encoding:NSUTF8StringEncoding];
    return string != nil ? string : @"";
}

}  // namespace platform::macos
