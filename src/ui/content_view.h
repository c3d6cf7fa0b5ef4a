#pragma once

#include <QWidget>

#include "app/application.h"
#include "app/settings_store.h"
#include "app/windows.h"
#include "base/alive.h"
#include "base/bundle.h"
#include "base/file_manager.h"
#include "base/log.h"
#include "base/main_queue.h"
#include "base/permissions.h"
#include "shortcuts/key_monitor.h"
#include "shortcuts/shortcut_manager.h"
#include "ui/content_settings.h"
#include "ui/dock_icon.h"
#include "ui/login_item.h"
#include "ui/permission_check.h"

namespace ui {

/// The content of the settings window: one panel of a fixed size in which everything is set that a
/// user can set. Each control writes its setting at once and follows it. Main thread.
class ContentView final : public QWidget {
  public:
    /// What it needs of the outside; everything outlives it.
    struct Mediator {
        app::SettingsStore& settings;
        shortcuts::ShortcutManager& shortcutManager;
        shortcuts::KeyMonitor& keyMonitor;
        LoginItemService& loginItems;
        base::Permissions& permissions;
        base::FileManager& fileManager;
        app::Windows& windows;
        app::Application& application;
        base::MainQueue& mainQueue;
        base::Log& log;
        base::Bundle bundle{};
    };
    explicit ContentView(const Mediator& mediator);

  protected:
    /// Checks the permissions, in a later turn of the main queue.
    void showEvent(QShowEvent* event) override;

  private:
    QWidget* makeModeCards(const Mediator& mediator);
    QWidget* makeGeneralSwitches(const Mediator& mediator);

    ContentSettings settings_;
    DockIcon dockIcon_;
    PermissionCheck permissionCheck_;
    base::MainQueue& mainQueue_;
    base::Alive alive_;
};

}  // namespace ui
