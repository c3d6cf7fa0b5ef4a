#pragma once

#include "base/permissions.h"

namespace platform::macos {

/// What the system's privacy settings let this program do. Nothing prompts.
class PrivacyPermissions final : public base::Permissions {
  public:
    // Main thread, as every method here.
    [[nodiscard]] bool canCaptureScreen() const override;
    [[nodiscard]] bool isAccessibilityTrusted() const override;
    /// Empty: the user can grant everything.
    [[nodiscard]] std::string screenCaptureLimit() const override;
    /// Empty, too.
    [[nodiscard]] std::string accessibilityLimit() const override;
    void openSettingsPage(const std::string& url) override;
};

}  // namespace platform::macos
