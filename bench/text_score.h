#pragma once

#include <string>
#include <vector>

namespace bench {

/// What a reading got wrong.
struct TextScore {
    long characters = 0;
    long wrongCharacters = 0;
    long lines = 0;
    long exactLines = 0;
    long linesRead = 0;

    TextScore& operator+=(const TextScore& other);
    /// Wrong characters a true character. Without true text: every character read is one too many.
    [[nodiscard]] double errorRate() const;
    /// The share of true lines that were read exactly.
    [[nodiscard]] double exactShare() const;
};

/// The lines of UTF-8 text in composed form, white space collapsed, empty ones left out.
std::vector<std::string> normalizedLines(const std::string& text);

/// Insertions, deletions and replacements of code points between the texts (Levenshtein, 1966).
long editDistance(const std::string& one, const std::string& other);

/// Compares texts line by line, order and all, after `normalizedLines`; the exact lines are counted
/// whatever their order.
TextScore scoreText(const std::string& truth, const std::string& reading);

}  // namespace bench
