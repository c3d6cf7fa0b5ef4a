#pragma once

#include <cstdlib>
#include <string>

namespace platform {

/// The value of an environment variable, empty when it is not set. While no other thread changes
/// the environment.
inline std::string environmentValue(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

}  // namespace platform
