#pragma once

#include <memory>

#include "shortcuts/key_monitor.h"

namespace platform::macos {

/// The events of this program's keyboard, seen before any control sees them. What the system itself
/// takes, registered hot keys above all, does not come here.
class LocalKeyMonitor final : public shortcuts::KeyMonitor {
  public:
    // Main thread, as the calls of the handler.
    [[nodiscard]] std::unique_ptr<shortcuts::InstalledKeyMonitor> install(Handler handler) override;
};

}  // namespace platform::macos
