#include "text_score.h"

#include <utf8proc.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <sstream>

namespace bench {

namespace {

std::string composed(const std::string& text) {
    auto* form = utf8proc_NFC(reinterpret_cast<const utf8proc_uint8_t*>(text.c_str()));
    if (form == nullptr) {
        return text;
    }
    std::string result = reinterpret_cast<const char*>(form);
    std::free(form);
    return result;
}

std::vector<utf8proc_int32_t> codePointsOf(const std::string& text) {
    std::vector<utf8proc_int32_t> points;
    const auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
    auto left = static_cast<utf8proc_ssize_t>(text.size());
    while (left > 0) {
        utf8proc_int32_t point = 0;
        const utf8proc_ssize_t length =
            std::max<utf8proc_ssize_t>(1, utf8proc_iterate(bytes, left, &point));
        points.push_back(point);
        bytes += length;
        left -= length;
    }
    return points;
}

std::string joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        if (!text.empty()) {
            text += '\n';
        }
        text += line;
    }
    return text;
}

}  // namespace

TextScore& TextScore::operator+=(const TextScore& other) {
    characters += other.characters;
    wrongCharacters += other.wrongCharacters;
    lines += other.lines;
    exactLines += other.exactLines;
    linesRead += other.linesRead;
    return *this;
}

double TextScore::errorRate() const {
    return static_cast<double>(wrongCharacters) / static_cast<double>(std::max(1L, characters));
}

double TextScore::exactShare() const {
    return static_cast<double>(exactLines) / static_cast<double>(std::max(1L, lines));
}

std::vector<std::string> normalizedLines(const std::string& text) {
    static const std::string noBreakSpace = "\xC2\xA0";
    std::string plain = composed(text);
    for (std::size_t place = plain.find(noBreakSpace); place != std::string::npos;
         place = plain.find(noBreakSpace, place)) {
        plain.erase(place, 1);
        plain[place] = ' ';
    }
    std::replace(plain.begin(), plain.end(), '\f', '\n');
    std::vector<std::string> lines;
    std::istringstream source(plain);
    for (std::string line; std::getline(source, line);) {
        std::istringstream words(line);
        std::string collapsed;
        for (std::string word; words >> word;) {
            if (!collapsed.empty()) {
                collapsed += ' ';
            }
            collapsed += word;
        }
        if (!collapsed.empty()) {
            lines.push_back(collapsed);
        }
    }
    return lines;
}

long editDistance(const std::string& one, const std::string& other) {
    const auto from = codePointsOf(one);
    const auto to = codePointsOf(other);
    std::vector<long> costs(to.size() + 1);
    for (std::size_t index = 0; index <= to.size(); ++index) {
        costs[index] = static_cast<long>(index);
    }
    for (std::size_t row = 1; row <= from.size(); ++row) {
        long diagonal = costs[0];
        costs[0] = static_cast<long>(row);
        for (std::size_t column = 1; column <= to.size(); ++column) {
            const long above = costs[column];
            const long replaced = diagonal + (from[row - 1] == to[column - 1] ? 0 : 1);
            costs[column] = std::min({above + 1, costs[column - 1] + 1, replaced});
            diagonal = above;
        }
    }
    return costs.back();
}

TextScore scoreText(const std::string& truth, const std::string& reading) {
    const auto trueLines = normalizedLines(truth);
    const auto readLines = normalizedLines(reading);
    TextScore score;
    const std::string whole = joined(trueLines);
    score.characters = static_cast<long>(codePointsOf(whole).size());
    score.wrongCharacters = editDistance(whole, joined(readLines));
    score.lines = static_cast<long>(trueLines.size());
    score.linesRead = static_cast<long>(readLines.size());
    std::map<std::string, int> left;
    for (const std::string& line : readLines) {
        ++left[line];
    }
    for (const std::string& line : trueLines) {
        if (left[line] > 0) {
            --left[line];
            ++score.exactLines;
        }
    }
    return score;
}

}  // namespace bench
