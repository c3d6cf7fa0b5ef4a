#pragma once

#include "overlay/workspace.h"

namespace platform::macos {

/// The applications that the shared workspace knows.
class CocoaWorkspace final : public overlay::Workspace {
  public:
    // Main thread.
    [[nodiscard]] std::optional<overlay::Application> frontmostApplication() override;
};

}  // namespace platform::macos
