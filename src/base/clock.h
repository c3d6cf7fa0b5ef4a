#pragma once

#include <ctime>
#include <string>

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

/// The date and the time as they stand in the names of files: "2025-03-07 at 14.05.09".
std::string fileNameDate(const std::tm& time);

}  // namespace base
