#pragma once

#include <string>

#include "base/permissions.h"

namespace platform::freedesktop {

/// The permissions of a session that keeps nothing from its programs, as an X11 session does:
/// every client may read the screen and grab the keyboard. Main thread.
class SessionPermissions final : public base::Permissions {
  public:
    [[nodiscard]] bool canCaptureScreen() const override { return true; }
    [[nodiscard]] bool isAccessibilityTrusted() const override { return true; }
    /// Such a session has no page that grants what is granted already: nothing is opened.
    void openSettingsPage(const std::string& url) override;
};

}  // namespace platform::freedesktop
