#include "base/log.h"

#include <cstdio>
#include <cstdlib>

namespace base {

void StandardOutputLog::line(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fputc('\n', stdout);
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
