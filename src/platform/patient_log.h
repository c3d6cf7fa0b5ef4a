#pragma once

#include "base/log.h"

namespace platform {

/// Standard output without waiting for its reader without end: where the reader of a pipe stalls
/// for a second, lines are left out until it reads again. Main thread.
class PatientLog final : public base::Log {
  public:
    void line(std::string_view text) override;

  private:
    base::StandardOutputLog output_;
    bool isReaderStalled_ = false;
};

}  // namespace platform
