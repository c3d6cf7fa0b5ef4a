#include "platform/tesseract/character_sizes.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <string_view>

#include "platform/tesseract/page_planes.h"

namespace platform::tesseract {

namespace {

/// Letters whose height no other letter of their form shares.
constexpr std::string_view surelySmall = "aegmnpqry";
constexpr std::string_view surelyTall = "ABDEFGHKLMNPRTYbdhk2345679";
/// Letters whose capitals have the same form.
constexpr std::string_view sameInBothCases = "cosuvwxz";
constexpr std::size_t fewestOfEach = 2;
/// Small letters and capitals that differ less cannot be told apart.
constexpr double leastRatio = 1.15;
/// How far from the usual height a letter may be, as a share of the difference of the two.
constexpr double decisiveShare = 0.35;

/// In letter heights.
constexpr double belowBaseline = 0.12;
constexpr double dotSize = 0.4;
constexpr double flat = 0.25;
constexpr double shortestLowLine = 0.6;
constexpr double shortestDash = 0.25;
constexpr double longestDash = 1.2;
constexpr double lowestDash = 0.2;
constexpr double highestDash = 0.85;

}  // namespace

std::string markAt(const CharacterPlace& place) {
    const double height = place.top - place.bottom;
    const double middle = (place.top + place.bottom) / 2;
    const bool isFlat = height <= std::max(flat, 2 * place.pixel);
    if (isFlat && place.top <= place.pixel / 2 && place.width >= shortestLowLine) {
        return "_";
    }
    if (isFlat && middle > lowestDash && middle < highestDash && place.width >= shortestDash &&
        place.width <= longestDash && place.width > 1.8 * height) {
        return "-";
    }
    const bool isSquare = std::abs(place.width - height) <= place.pixel;
    if (isSquare && height <= dotSize && std::abs(place.bottom) <= place.pixel / 2) {
        return ".";
    }
    return {};
}

void CharacterSizes::learn(const std::string& character, const CharacterPlace& place) {
    if (character.size() != 1) {
        return;
    }
    if (surelySmall.find(character.front()) != std::string_view::npos) {
        smallTops_.push_back(place.top);
    } else if (surelyTall.find(character.front()) != std::string_view::npos) {
        tallTops_.push_back(place.top);
    }
}

std::string CharacterSizes::corrected(const std::string& character, const CharacterPlace& place,
                                      const std::string& previous) const {
    if (character.size() != 1) {
        return character;
    }
    const double deep = std::max(belowBaseline, 1.5 * place.pixel);
    const double height = place.top - place.bottom;
    const bool isDot = height <= dotSize && place.bottom >= -place.pixel / 2 &&
                       height <= place.width + place.pixel / 2;
    if (character == "," && isDot) {
        return ".";
    }
    if (character == "." && -place.bottom >= deep && height >= place.width + 1.5 * place.pixel) {
        return ",";
    }
    const auto letter =
        static_cast<char>(std::tolower(static_cast<unsigned char>(character.front())));
    if (sameInBothCases.find(letter) != std::string_view::npos) {
        const bool followsSmall =
            previous.size() == 1 && std::islower(static_cast<unsigned char>(previous.front())) != 0;
        return followsSmall ? character : withCaseOf(character.front(), place);
    }
    return character;
}

std::string CharacterSizes::withCaseOf(char letter, const CharacterPlace& place) const {
    const std::string same(1, letter);
    if (smallTops_.size() < fewestOfEach || tallTops_.size() < fewestOfEach) {
        return same;
    }
    const double small = median(smallTops_);
    const double tall = median(tallTops_);
    if (tall < leastRatio * small) {
        return same;
    }
    const double decisive = decisiveShare * (tall - small);
    if (std::abs(place.top - tall) < decisive) {
        return {static_cast<char>(std::toupper(static_cast<unsigned char>(letter)))};
    }
    if (std::abs(place.top - small) < decisive) {
        return {static_cast<char>(std::tolower(static_cast<unsigned char>(letter)))};
    }
    return same;
}

}  // namespace platform::tesseract
