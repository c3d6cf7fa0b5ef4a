#pragma once

#include <string>
#include <vector>

namespace platform::tesseract {

/// Where the ink of a character is, in letter heights of its line; above the baseline is positive.
struct CharacterPlace {
    double top = 0;
    double bottom = 0;
    double width = 0;
    /// One pixel in the same measure: what blending and rounding explain.
    double pixel = 0;
};

/// What an unread mark is if its place leaves no doubt: "_", "-" or "."; empty otherwise.
std::string markAt(const CharacterPlace& place);

/// Tells characters apart that look the same but for their size or place, such as "w" and "W" or
/// "." and ",": an engine that sees single lines cannot know how tall the small letters of a page
/// are. All characters are learned first.
class CharacterSizes {
  public:
    void learn(const std::string& character, const CharacterPlace& place);

    /// The character that was read, or the one that is like it and has this size and place.
    /// `previous` is the one in front of it in its word, or empty: after a small letter the
    /// engine knows better which case follows.
    [[nodiscard]] std::string corrected(const std::string& character, const CharacterPlace& place,
                                        const std::string& previous) const;

  private:
    [[nodiscard]] std::string withCaseOf(char letter, const CharacterPlace& place) const;

    std::vector<double> smallTops_;
    std::vector<double> tallTops_;
};

}  // namespace platform::tesseract
