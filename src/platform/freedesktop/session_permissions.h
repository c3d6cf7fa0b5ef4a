#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/permissions.h"
#include "platform/freedesktop/program_starter.h"
#include "platform/freedesktop/settings_pages.h"

namespace platform::freedesktop {

/// The permissions of a session without a list of who may do what: whatever it lets the program do
/// is granted. Main thread.
class SessionPermissions final : public base::Permissions {
  public:
    /// What the window system of the session answers, at each call afresh.
    struct Probes {
        std::function<bool()> canReadScreen;
        std::function<bool()> canGrabKeys;
        /// Whether it serves only a part of a session that belongs to another window system.
        std::function<bool()> isNested;
    };
    /// How a page is opened.
    struct Pages {
        /// The parts of $XDG_CURRENT_DESKTOP.
        std::vector<std::string> currentDesktops;
        /// The absolute path of the program's own page for desktops without one.
        std::string helpPage;
        ProgramStarter& starter;
        /// Shows that page in a window of the program's own, when nothing else can.
        std::function<void(const std::string& path)> showHelpPage;
    };
    SessionPermissions(Probes probes, Pages pages);

    [[nodiscard]] bool canCaptureScreen() const override;
    [[nodiscard]] bool isAccessibilityTrusted() const override;
    [[nodiscard]] std::string screenCaptureLimit() const override;
    [[nodiscard]] std::string accessibilityLimit() const override;
    /// The desktop's page, or the help page where it has none or none could change anything.
    void openSettingsPage(const std::string& url) override;

  private:
    [[nodiscard]] bool canSettingsChange(SettingsPage page) const;

    Probes probes_;
    Pages pages_;
};

}  // namespace platform::freedesktop
