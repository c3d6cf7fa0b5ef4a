#include "platform/tesseract/figures.h"

#include <algorithm>
#include <cctype>

namespace platform::tesseract {

namespace {

bool isFigure(char character) {
    return character >= '0' && character <= '9';
}

bool isRound(char character) {
    return character == 'O' || character == 'o';
}

bool isUpright(char character) {
    return character == 'l' || character == 'I';
}

void makeRoundFigures(std::string& word) {
    std::replace_if(word.begin(), word.end(), isRound, '0');
}

bool isHexadecimal(const std::string& word) {
    return word.size() >= 3 && (word[0] == '0' || isRound(word[0])) && word[1] == 'x' &&
           std::all_of(word.begin() + 2, word.end(), [](char character) {
               return std::isxdigit(static_cast<unsigned char>(character)) != 0 ||
                      isRound(character);
           });
}

/// Digests and identifiers are longer than other words that hold nothing but these digits.
constexpr std::size_t shortestDigest = 12;
constexpr int fewestFiguresOfDigest = 4;

/// Zeros with a stroke or a dot, and round ones.
bool isZeroLike(char character) {
    return isRound(character) || character == 'Q' || character == '@';
}

/// Whether a word is a long hexadecimal number in one case, but for signs that look like zeros.
bool isDigest(const std::string& word) {
    int figures = 0;
    bool hasSmall = false;
    bool hasCapital = false;
    for (const char character : word) {
        figures += isFigure(character) ? 1 : 0;
        hasSmall |= character >= 'a' && character <= 'f';
        hasCapital |= character >= 'A' && character <= 'F';
        if (std::isxdigit(static_cast<unsigned char>(character)) == 0 && !isZeroLike(character)) {
            return false;
        }
    }
    return word.size() >= shortestDigest && figures >= fewestFiguresOfDigest &&
           hasSmall != hasCapital;
}

/// Whether `word` and what follows it make an address such as "cafe12@feed.de".
bool isAddress(std::string_view word, std::string_view rest) {
    return word.find('@') != std::string_view::npos && rest.size() > 1 && rest[0] == '.' &&
           std::isalpha(static_cast<unsigned char>(rest[1])) != 0;
}

/// The zeros of long hexadecimal numbers, which `text` may have as at signs.
std::string withZerosOfDigests(std::string text) {
    const auto isOfDigest = [](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return byte >= 0x80 || std::isalnum(byte) != 0 || character == '@' || character == '_';
    };
    for (auto first = text.begin(); first != text.end();) {
        const auto last = std::find_if_not(first, text.end(), isOfDigest);
        if (isDigest({first, last}) && !isAddress({first, last}, {last, text.end()})) {
            std::replace_if(first, last, isZeroLike, '0');
        }
        first = std::find_if(last, text.end(), isOfDigest);
    }
    return text;
}

/// `word` is nothing but letters and figures.
void correct(std::string& word, bool isBeforeDecimals) {
    if (isHexadecimal(word)) {
        makeRoundFigures(word);
        return;
    }
    if (word.size() == 1 && isRound(word[0]) && isBeforeDecimals) {
        word = "0";
        return;
    }
    const bool isNumber = std::all_of(word.begin(), word.end(), [](char character) {
        return isFigure(character) || isRound(character) || isUpright(character);
    });
    if (!isNumber || !isFigure(word.front())) {
        return;
    }
    makeRoundFigures(word);
    for (std::size_t index = 1; index + 1 < word.size(); ++index) {
        if (isUpright(word[index]) && isFigure(word[index + 1])) {
            word[index] = '1';
        }
    }
}

}  // namespace

std::string withFigures(const std::string& reading) {
    const std::string text = withZerosOfDigests(reading);
    const auto isOfWord = [](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return byte >= 0x80 || std::isalnum(byte) != 0 || character == '_';
    };
    std::string result;
    for (std::size_t place = 0; place < text.size();) {
        std::size_t end = place;
        while (end < text.size() && isOfWord(text[end])) {
            ++end;
        }
        if (end == place) {
            result += text[place++];
            continue;
        }
        std::string word = text.substr(place, end - place);
        const bool isBeforeDecimals =
            end + 1 < text.size() && text[end] == '.' && isFigure(text[end + 1]);
        correct(word, isBeforeDecimals);
        result += word;
        place = end;
    }
    return result;
}

}  // namespace platform::tesseract
