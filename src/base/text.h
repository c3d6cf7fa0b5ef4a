#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace base {

/// The shortest decimal form that reads back to the same number, always with a fractional digit
/// ("100.0", "0.25"), or an exponent where that is shorter ("1e+20").
std::string decimalText(double number);

/// `text` without the blanks, tabs and carriage returns at its ends.
std::string_view withoutOuterBlanks(std::string_view text);

/// Whether a byte is an ASCII control character.
constexpr bool isControl(char byte) {
    return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F;
}

/// `text`, which is UTF-8, in Latin-1; what that cannot hold, broken sequences too, becomes '?'.
std::string latin1Text(std::string_view text);

/// `text` with every byte that is not part of valid UTF-8 replaced by U+FFFD.
std::string validUtf8(std::string_view text);

// What follows takes any bytes, reads them as `validUtf8` does, and gives valid UTF-8.

/// Without the white space and line breaks at both ends: Unicode's separators (Z*), U+0009 to
/// U+000D and U+0085.
std::string trimmed(std::string_view text);
/// The pieces between such characters, the empty ones dropped.
std::vector<std::string> words(std::string_view text);
/// The pieces between characters that are no letters, marks or numbers (Unicode's L*, M*, N*) of
/// any script, the empty ones dropped.
std::vector<std::string> alphanumericPieces(std::string_view text);
/// How many characters a reader sees: extended grapheme clusters (Unicode Standard Annex 29).
std::size_t characterCount(std::string_view text);
/// The first `count` of them; a cluster is never split.
std::string firstCharacters(std::string_view text, std::size_t count);
/// `pieces` with one `separator` between them.
std::string joined(const std::vector<std::string>& pieces, std::string_view separator);

}  // namespace base
