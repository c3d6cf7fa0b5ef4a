#pragma once

#include <string>
#include <vector>

namespace platform::tesseract {

/// The code points of UTF-8 text; a stray byte is one of its own.
std::vector<std::string> charactersOf(const std::string& text);

/// `text` with the straight quotes that monospaced fonts have.
std::string withStraightQuotes(std::string text);
/// `text` with straight single quotes.
std::string withStraightApostrophes(std::string text);

}  // namespace platform::tesseract
