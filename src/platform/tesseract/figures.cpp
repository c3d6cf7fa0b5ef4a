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

std::string withFigures(const std::string& text) {
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
