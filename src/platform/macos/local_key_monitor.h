#pragma once

#include <memory>

#include "shortcuts/key_monitor.h"

namespace platform::macos {

/// The events of this program's keyboard, seen before any control sees them. What the system itself
/// takes, registered hot keys above all, does not come here; releases, and the repeats of a key
/// whose handler has gone, go their usual way. The system is asked for events only while a monitor
/// is installed.
class LocalKeyMonitor final : public shortcuts::KeyMonitor {
  public:
    // Main thread, as every method here and the calls of the handlers.
    LocalKeyMonitor();
    ~LocalKeyMonitor() override;
    LocalKeyMonitor(const LocalKeyMonitor&) = delete;
    LocalKeyMonitor& operator=(const LocalKeyMonitor&) = delete;

    [[nodiscard]] std::unique_ptr<shortcuts::InstalledKeyMonitor> install(Handler handler) override;

  private:
    struct Monitors;
    /// Shared with the monitors that are installed, which may outlive this.
    std::shared_ptr<Monitors> monitors_;
};

}  // namespace platform::macos
