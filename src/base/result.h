#pragma once

#include <string>
#include <utility>
#include <variant>

namespace base {

enum class ErrorKind { notFound, notPermitted, unavailable, invalid, failed };

/// Why a call failed: a kind for the program and one sentence for the reader, never empty.
struct Error {
    ErrorKind kind = ErrorKind::failed;
    std::string sentence;
    friend bool operator==(const Error&, const Error&) = default;
};

/// A value, or the reason why there is none.
template <typename Value>
class [[nodiscard]] Result {
  public:
    Result(Value value) : outcome_(std::in_place_index<0>, std::move(value)) {}
    Result(Error error) : outcome_(std::in_place_index<1>, std::move(error)) {}

    [[nodiscard]] bool hasValue() const { return outcome_.index() == 0; }
    explicit operator bool() const { return hasValue(); }

    /// Requires a value.
    [[nodiscard]] Value& value() { return std::get<0>(outcome_); }
    [[nodiscard]] const Value& value() const { return std::get<0>(outcome_); }
    /// Requires an error.
    [[nodiscard]] const Error& error() const { return std::get<1>(outcome_); }

  private:
    std::variant<Value, Error> outcome_;
};

struct Nothing {
    friend bool operator==(const Nothing&, const Nothing&) = default;
};

/// The result of a call that gives nothing back but may fail.
using Status = Result<Nothing>;

}  // namespace base
