#pragma once

#include <string>

namespace platform::tesseract {

/// The text with figures where letters of their form stand in numbers: "1O4" is 104, "O.5" is 0.5
/// and "Ox1F" is 0x1F. Long hexadecimal numbers, such as digests, get the zeros that were taken for
/// at signs or round letters. What may be a name, such as "O2" or "H2O", stays.
std::string withFigures(const std::string& reading);

}  // namespace platform::tesseract
