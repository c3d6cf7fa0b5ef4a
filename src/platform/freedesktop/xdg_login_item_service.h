#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/freedesktop/xdg_directories.h"
#include "ui/login_item_service.h"

namespace platform::freedesktop {

/// The login item as `app.lumaframe.Lumaframe.desktop` in the user's autostart directory, which the
/// session's own runner reads at log-in. Main thread.
class XdgLoginItemService final : public ui::LoginItemService {
  public:
    /// What depends on the session and the process.
    struct Surroundings {
        /// The parts of $XDG_CURRENT_DESKTOP.
        std::vector<std::string> currentDesktops;
        /// The absolute path of the binary that runs.
        std::function<std::string()> runningProgram;
    };

    XdgLoginItemService(XdgDirectories directories, Surroundings surroundings);

    [[nodiscard]] ui::LoginItemStatus status() const override;
    base::Status registerItem() override;
    base::Status unregisterItem() override;

  private:
    base::Status writeEntry(const std::string& text) const;
    [[nodiscard]] bool isStartedBySystem() const;

    XdgDirectories directories_;
    Surroundings surroundings_;
    /// Empty when the user has no place for settings.
    std::string userDirectory_;
};

/// The parts of $XDG_CURRENT_DESKTOP, best first.
std::vector<std::string> currentDesktopNames();

}  // namespace platform::freedesktop
