#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace desktop {

/// An ICC profile of a display, valid in every part, as a colour manager would write it.
struct ColorProfile {
    enum class Version { two = 2, four = 4 };

    Version version = Version::two;
    /// Two letters of a language and the profile's name in it, ASCII; version 2 has only the first.
    std::vector<std::pair<std::string, std::string>> descriptions{{"en", "A display"}};
    double gamma = 2.2;

    [[nodiscard]] std::vector<std::uint8_t> bytes() const;
};

}  // namespace desktop
