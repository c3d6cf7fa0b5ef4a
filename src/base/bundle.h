#pragma once

#include <optional>
#include <string>

namespace base {

/// The program as its system has it installed. Absolute paths; empty where there is no such file.
struct Bundle {
    /// What the system knows the program's windows by; none for a program that it does not know.
    std::optional<std::string> identifier{};
    /// What a person drags to hand the program to another one: on a freedesktop system the desktop
    /// entry of an installed program, the binary of another one.
    std::string location{};
    /// A PNG picture of the application icon, at least 300 pixels in square.
    std::string icon{};
};

}  // namespace base
