#include "capture/text_file_name.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "base/clock.h"
#include "base/text.h"

namespace capture {

namespace {

constexpr std::size_t wordsInName = 5;
constexpr std::size_t charactersInName = 50;

}  // namespace

std::string textFileStem(std::string_view text, const std::tm& now) {
    std::vector<std::string> firstWords = base::words(text);
    firstWords.resize(std::min(firstWords.size(), wordsInName));
    // The cut to five words comes first: "foo-bar" counts as one of them and gives two pieces.
    const std::string stem =
        base::joined(base::alphanumericPieces(base::joined(firstWords, " ")), " ");
    return stem.empty() ? "OCR Recognition " + base::fileNameDate(now)
                        : base::firstCharacters(stem, charactersInName);
}

}  // namespace capture
