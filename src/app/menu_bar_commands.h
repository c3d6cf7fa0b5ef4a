#pragma once

#include <QAction>
#include <QMenu>
#include <functional>

#include "app/notification_center.h"

namespace app {

/// The program's menu in the tray, and its commands that work in every window. Main thread, while
/// a QApplication lives.
///
/// Works without a tray: the commands and the observation exist as long as the object does.
class MenuBarCommands {
  public:
    struct Actions {
        std::function<void()> showMainWindow;
        /// Opens the scene "permissions".
        std::function<void()> openPermissionsScene;
        std::function<void()> terminate;
    };

    /// Observes "OpenPermissionsWindow" on `notificationCenter`, which must outlive the object.
    MenuBarCommands(NotificationCenter& notificationCenter, Actions actions);
    ~MenuBarCommands();
    MenuBarCommands(const MenuBarCommands&) = delete;
    MenuBarCommands& operator=(const MenuBarCommands&) = delete;

    /// The menu as the tray shows it.
    [[nodiscard]] QMenu& menu() { return menu_; }
    /// "Settings..." (Ctrl and comma) of the program's windows: posts "OpenPermissionsWindow".
    [[nodiscard]] QAction& settingsCommand() { return settingsCommand_; }
    /// "Quit Lumaframe" (Ctrl and Q), for the program's windows too.
    [[nodiscard]] QAction& quitCommand() { return quitCommand_; }

  private:
    Actions actions_;
    QAction settingsCommand_;
    QAction quitCommand_;
    QMenu menu_;
    NotificationCenter::Observation observation_;
};

}  // namespace app
