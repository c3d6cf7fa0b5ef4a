#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/result.h"

namespace base {

/// Where the diagnostic lines of the program go. Main thread.
class Log {
  public:
    virtual ~Log() = default;
    /// Prints one line; `text` carries no line feed at its end.
    virtual void line(std::string_view text) = 0;
};

/// Standard output, one flush per line, so that a reader sees each line as it happens. Control
/// characters become blanks: a path or a name from outside cannot make two lines of one.
class StandardOutputLog final : public Log {
  public:
    void line(std::string_view text) override;
};

/// "nil" without an error, else "Optional(<sentence>)": how a log line names an optional error.
std::string describe(const std::optional<Error>& error);

/// Prints one sentence to standard error and aborts the process.
[[noreturn]] void fatalError(std::string_view sentence);

}  // namespace base
