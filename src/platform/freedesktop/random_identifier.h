#pragma once

#include <string>

namespace platform::freedesktop {

/// A random UUID (version 4 of RFC 4122) in its string form, upper case. Any thread.
std::string randomIdentifier();

}  // namespace platform::freedesktop
