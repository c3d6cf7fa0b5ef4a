#pragma once

#include <string>

namespace base {

/// What the session allows this process. The probes never prompt. Main thread.
class Permissions {
  public:
    virtual ~Permissions() = default;
    /// Whether the contents of the screen can be read.
    [[nodiscard]] virtual bool canCaptureScreen() const = 0;
    /// Whether the process may see and steer the keyboard of other applications.
    [[nodiscard]] virtual bool isAccessibilityTrusted() const = 0;
    /// Why the session keeps the screen from the program whatever its settings say: one sentence
    /// for the user, empty when it does not.
    [[nodiscard]] virtual std::string screenCaptureLimit() const = 0;
    /// The same of the keyboard.
    [[nodiscard]] virtual std::string accessibilityLimit() const = 0;
    /// Opens the page of the system's settings that `url` names, or what serves as one on this
    /// system. Returns at once; an unknown URL does nothing.
    virtual void openSettingsPage(const std::string& url) = 0;
};

}  // namespace base
