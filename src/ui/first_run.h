#pragma once

#include <array>
#include <functional>
#include <string>

#include "app/notification_center.h"
#include "app/settings_store.h"
#include "base/file_manager.h"
#include "base/permissions.h"

namespace ui {

/// What the program needs to be allowed.
enum class Permission { screenRecording, accessibility, filesAndFolders };
/// As the permissions window lists them.
inline constexpr std::array everyPermission{Permission::screenRecording, Permission::accessibility,
                                            Permission::filesAndFolders};

/// What the one button of the permissions window does.
enum class FirstRunAction { refreshStatus, getStarted };

/// The decisions of the permissions window's panel: what is granted, what is offered, and what the
/// buttons do. Main thread.
class FirstRun {
  public:
    /// What it needs of the outside; everything outlives it.
    struct Mediator {
        base::Permissions& permissions;
        const base::FileManager& fileManager;
        app::SettingsStore& settings;
        app::NotificationCenter& notifications;
    };
    /// From here on the status is refreshed each time the program becomes active. `onRefreshed` is
    /// called after each refresh.
    FirstRun(Mediator mediator, std::function<void()> onRefreshed);
    FirstRun(const FirstRun&) = delete;
    FirstRun& operator=(const FirstRun&) = delete;

    /// What the last refresh has found; nothing is granted before the first.
    [[nodiscard]] bool isGranted(Permission permission) const;
    /// Asks for all three in their order. Nothing prompts.
    void refreshStatus();

    /// Asks afresh, whatever the last refresh has found, up to the first that is missing.
    [[nodiscard]] FirstRunAction actionToOffer() const;
    /// Getting started is stored, and then ends in the notification that closes the window.
    void perform(FirstRunAction action);

    /// Opens the page of the system's settings on which the user can grant the permission.
    void openSettingsPage(Permission permission);
    /// What the permission is for, in one line, and in another why it is missing, if the session is
    /// why.
    [[nodiscard]] std::string help(Permission permission) const;

  private:
    [[nodiscard]] std::string sessionLimit(Permission permission) const;

    Mediator mediator_;
    std::function<void()> onRefreshed_;
    bool screenRecordingStatus_ = false;
    bool accessibilityStatus_ = false;
    bool filesFoldersStatus_ = false;
    app::NotificationCenter::Observation activation_;
};

/// The name of a permission, for the user.
std::string permissionTitle(Permission permission);

}  // namespace ui
