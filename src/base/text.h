#pragma once

#include <string>
#include <string_view>

namespace base {

/// The shortest decimal form that reads back to the same number, always with a fractional digit
/// ("100.0", "0.25"), or an exponent where that is shorter ("1e+20").
std::string decimalText(double number);

/// `text`, which is UTF-8, in Latin-1; what that cannot hold, broken sequences too, becomes '?'.
std::string latin1Text(std::string_view text);

}  // namespace base
