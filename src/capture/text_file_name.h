#pragma once

#include <ctime>
#include <string>
#include <string_view>

namespace capture {

/// The name, without ".txt", of the file for a recognised text: the letters, marks and numbers of
/// its first five words, at most 50 characters, or "OCR Recognition " and the date when they hold
/// none. Valid UTF-8 for any input.
std::string textFileStem(std::string_view text, const std::tm& now);

}  // namespace capture
