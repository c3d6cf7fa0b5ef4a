#include "platform/tesseract/characters.h"

#include <algorithm>

namespace platform::tesseract {

namespace {

void replaceAll(std::string& text, const std::string& from, const std::string& to) {
    for (std::size_t place = text.find(from); place != std::string::npos;
         place = text.find(from, place + to.size())) {
        text.replace(place, from.size(), to);
    }
}

}  // namespace

std::vector<std::string> charactersOf(const std::string& text) {
    std::vector<std::string> characters;
    for (std::size_t place = 0; place < text.size();) {
        const auto lead = static_cast<unsigned char>(text[place]);
        std::size_t length = 1;
        if (lead >= 0xF0) {
            length = 4;
        } else if (lead >= 0xE0) {
            length = 3;
        } else if (lead >= 0xC0) {
            length = 2;
        }
        length = std::min(length, text.size() - place);
        characters.push_back(text.substr(place, length));
        place += length;
    }
    return characters;
}

std::string withStraightApostrophes(std::string text) {
    replaceAll(text, "‘", "'");
    replaceAll(text, "’", "'");
    return text;
}

std::string withStraightQuotes(std::string text) {
    text = withStraightApostrophes(std::move(text));
    replaceAll(text, "“", "\"");
    replaceAll(text, "”", "\"");
    return text;
}

}  // namespace platform::tesseract
