#pragma once

#include <ctime>

namespace base {

/// The wall clock, in the user's time zone.
class Clock {
  public:
    virtual ~Clock() = default;
    [[nodiscard]] virtual std::tm localTime() const = 0;
};

class SystemClock final : public Clock {
  public:
    [[nodiscard]] std::tm localTime() const override;
};

}  // namespace base
