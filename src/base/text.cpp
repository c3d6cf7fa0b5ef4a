#include "base/text.h"

#include <utf8proc.h>

#include <array>
#include <charconv>
#include <utility>

namespace base {

namespace {

/// What a byte that is not part of valid UTF-8 is read as.
constexpr std::string_view replacementCharacter = "\uFFFD";
constexpr utf8proc_int32_t replacementCodePoint = 0xFFFD;

/// One character and the bytes that hold it.
struct Character {
    utf8proc_int32_t codePoint = 0;
    std::string_view bytes;
};

/// Takes the first character off `text`, which must not be empty.
Character takeCharacter(std::string_view& text) {
    utf8proc_int32_t codePoint = 0;
    const auto length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                                         static_cast<utf8proc_ssize_t>(text.size()), &codePoint);
    const bool isValid = length > 0;
    const std::string_view bytes =
        isValid ? text.substr(0, static_cast<std::size_t>(length)) : replacementCharacter;
    text.remove_prefix(isValid ? bytes.size() : 1);
    return {isValid ? codePoint : replacementCodePoint, bytes};
}

bool isWhiteSpaceOrNewline(utf8proc_int32_t codePoint) {
    switch (utf8proc_category(codePoint)) {
        case UTF8PROC_CATEGORY_ZS:
        case UTF8PROC_CATEGORY_ZL:
        case UTF8PROC_CATEGORY_ZP:
            return true;
        default:
            return (codePoint >= 0x09 && codePoint <= 0x0D) || codePoint == 0x85;
    }
}

bool isAlphanumeric(utf8proc_int32_t codePoint) {
    const auto category = utf8proc_category(codePoint);
    return category >= UTF8PROC_CATEGORY_LU && category <= UTF8PROC_CATEGORY_NO;
}

/// The longest pieces of `text` in which `belongs` holds for every character.
template <typename Predicate>
std::vector<std::string> piecesOf(std::string_view text, Predicate belongs) {
    std::vector<std::string> found;
    std::string piece;
    while (!text.empty()) {
        const Character character = takeCharacter(text);
        if (belongs(character.codePoint)) {
            piece.append(character.bytes);
        } else if (!piece.empty()) {
            found.push_back(std::exchange(piece, {}));
        }
    }
    if (!piece.empty()) {
        found.push_back(std::move(piece));
    }
    return found;
}

/// Takes the first grapheme cluster off `text`, which must be valid UTF-8 and not empty.
std::string_view takeCluster(std::string_view& text) {
    const std::string_view all = text;
    utf8proc_int32_t state = 0;
    utf8proc_int32_t previous = takeCharacter(text).codePoint;
    while (!text.empty()) {
        std::string_view rest = text;
        const utf8proc_int32_t next = takeCharacter(rest).codePoint;
        if (utf8proc_grapheme_break_stateful(previous, next, &state)) {
            break;
        }
        previous = next;
        text = rest;
    }
    return all.substr(0, all.size() - text.size());
}

}  // namespace

std::string decimalText(double number) {
    std::array<char, 64> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number);
    std::string text(buffer.data(), end.ptr);
    if (text.find_first_not_of("-0123456789") == std::string::npos) {
        text += ".0";
    }
    return text;
}

std::string_view withoutOuterBlanks(std::string_view text) {
    const auto first = text.find_first_not_of(" \t\r");
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

std::string latin1Text(std::string_view text) {
    std::string latin1;
    latin1.reserve(text.size());
    while (!text.empty()) {
        const utf8proc_int32_t letter = takeCharacter(text).codePoint;
        latin1.push_back(letter <= 0xFF ? static_cast<char>(letter) : '?');
    }
    return latin1;
}

std::string validUtf8(std::string_view text) {
    std::string valid;
    valid.reserve(text.size());
    while (!text.empty()) {
        valid.append(takeCharacter(text).bytes);
    }
    return valid;
}

std::string trimmed(std::string_view text) {
    std::string kept;
    // What follows the last kept character, and is kept if another one comes.
    std::string pending;
    while (!text.empty()) {
        const Character character = takeCharacter(text);
        pending.append(character.bytes);
        if (!isWhiteSpaceOrNewline(character.codePoint)) {
            kept.append(pending);
            pending.clear();
        } else if (kept.empty()) {
            pending.clear();
        }
    }
    return kept;
}

std::vector<std::string> words(std::string_view text) {
    return piecesOf(text,
                    [](utf8proc_int32_t codePoint) { return !isWhiteSpaceOrNewline(codePoint); });
}

std::vector<std::string> alphanumericPieces(std::string_view text) {
    return piecesOf(text, isAlphanumeric);
}

std::size_t characterCount(std::string_view text) {
    const std::string valid = validUtf8(text);
    std::string_view rest = valid;
    std::size_t count = 0;
    for (; !rest.empty(); ++count) {
        takeCluster(rest);
    }
    return count;
}

std::string firstCharacters(std::string_view text, std::size_t count) {
    const std::string valid = validUtf8(text);
    std::string_view rest = valid;
    for (; count > 0 && !rest.empty(); --count) {
        takeCluster(rest);
    }
    return valid.substr(0, valid.size() - rest.size());
}

std::string joined(const std::vector<std::string>& pieces, std::string_view separator) {
    std::string text;
    for (const std::string& piece : pieces) {
        if (&piece != &pieces.front()) {
            text.append(separator);
        }
        text.append(piece);
    }
    return text;
}

}  // namespace base
