#pragma once

#include <optional>

#include "overlay/workspace.h"

namespace doubles {

/// The application in front is what the test says; none at first.
class FakeWorkspace final : public overlay::Workspace {
  public:
    std::optional<overlay::Application> frontmostApplication() override { return frontmost; }

    std::optional<overlay::Application> frontmost;
};

}  // namespace doubles
