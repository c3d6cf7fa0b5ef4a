#pragma once

#include <string>
#include <string_view>

namespace base {

/// The shortest decimal form that reads back to the same number, always with a fractional digit
/// ("100.0", "0.25"), or an exponent where that is shorter ("1e+20").
std::string decimalText(double number);

/// `text` without the blanks, tabs and carriage returns at its ends.
std::string_view trimmed(std::string_view text);

/// Whether a byte is an ASCII control character.
constexpr bool isControl(char byte) {
    return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F;
}

/// `text`, which is UTF-8, in Latin-1; what that cannot hold, broken sequences too, becomes '?'.
std::string latin1Text(std::string_view text);

}  // namespace base
