#pragma once

#include <string>

namespace base {

/// The shortest decimal form that reads back to the same number, always with a fractional digit
/// ("100.0", "0.25"), or an exponent where that is shorter ("1e+20").
std::string decimalText(double number);

}  // namespace base
