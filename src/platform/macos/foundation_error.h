#pragma once

#import <Foundation/Foundation.h>

#include <optional>

#include "base/result.h"
#include "platform/macos/foundation_text.h"

namespace platform::macos {

/// The error with what it says of itself in every detail; none for none. Any thread.
inline std::optional<base::Error> describedError(NSError* _Nullable error) {
    if (error == nil) {
        return std::nullopt;
    }
    return base::Error{base::ErrorKind::failed, textFrom(error.description)};
}

/// The error with what it says to the user. Any thread.
inline base::Error localizedError(NSError* _Nullable error) {
    const std::string sentence = textFrom(error.localizedDescription);
    return {base::ErrorKind::failed,
            sentence.empty() ? "The system does not say why it failed." : sentence};
}

}  // namespace platform::macos
