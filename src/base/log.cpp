#include "base/log.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>

#include "base/text.h"

namespace base {

void StandardOutputLog::line(std::string_view text) {
    std::string line;
    line.reserve(text.size() + 1);
    std::ranges::replace_copy_if(text, std::back_inserter(line), isControl, ' ');
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fflush(stdout);
}

std::string describe(const std::optional<Error>& error) {
    return error ? "Optional(" + error->sentence + ")" : "nil";
}

void fatalError(std::string_view sentence) {
    std::fwrite(sentence.data(), 1, sentence.size(), stderr);
    std::fputc('\n', stderr);
    std::fflush(stderr);
    std::abort();
}

}  // namespace base
