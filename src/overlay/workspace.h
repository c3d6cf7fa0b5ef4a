#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace overlay {

struct Application {
    std::int32_t processIdentifier = 0;
    std::optional<std::string> localizedName;
};

/// The applications of the desktop. Main thread.
class Workspace {
  public:
    virtual ~Workspace() = default;
    /// The application the user works in, none when nothing is in front.
    [[nodiscard]] virtual std::optional<Application> frontmostApplication() = 0;
};

}  // namespace overlay
