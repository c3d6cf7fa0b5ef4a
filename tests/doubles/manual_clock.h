#pragma once

#include <ctime>

#include "base/clock.h"

namespace doubles {

/// Shows the time that the test has set; 7 March 2025, 14:05:09 at first.
class ManualClock final : public base::Clock {
  public:
    ManualClock() { set(2025, 3, 7, 14, 5, 9); }
    void set(int year, int month, int day, int hour, int minute, int second) {
        now_ = {};
        now_.tm_year = year - 1900;
        now_.tm_mon = month - 1;
        now_.tm_mday = day;
        now_.tm_hour = hour;
        now_.tm_min = minute;
        now_.tm_sec = second;
        now_.tm_isdst = -1;
    }
    [[nodiscard]] std::tm localTime() const override { return now_; }

  private:
    std::tm now_{};
};

}  // namespace doubles
