#pragma once

#include <filesystem>
#include <memory>

#include "app/default_settings.h"
#include "app/settings_keys.h"
#include "app/settings_store.h"
#include "doubles/doubles.h"
#include "shortcuts/shortcut_manager.h"
#include "ui/content_view.h"
#include "ui/permissions_window.h"

namespace ui_tests {

/// What the windows need, all of it fake: a program whose launch is over.
struct ContentViewWorld {
    ContentViewWorld() {
        app::registerDefaultSettings(settings);
        backend.values[app::keys::shortcutsEnabledMigrationV1] = true;
        backend.values[app::keys::shortcutsDefaultKeyMigrationV2] = true;
        manager = std::make_unique<shortcuts::ShortcutManager>(
            shortcuts::ShortcutManager::Mediator{.hotKeys = hotKeys,
                                                 .settings = settings,
                                                 .notifications = notifications,
                                                 .permissions = permissions,
                                                 .mainQueue = queue,
                                                 .log = log,
                                                 .showSelection = [](base::CaptureMode) {}});
        queue.advance(std::chrono::milliseconds(200));
        queue.allowLeftovers();
        backend.writes.clear();
        log.lines.clear();
        windows.recordInto(calls);
        permissions.recordInto(calls);
        fileManager.recordInto(calls);
        loginItems.recordInto(calls);
        log.recordInto(calls);
    }

    [[nodiscard]] ui::ContentView::Mediator mediator() {
        return {.settings = settings,
                .shortcutManager = *manager,
                .keyMonitor = keyMonitor,
                .loginItems = loginItems,
                .permissions = permissions,
                .fileManager = fileManager,
                .windows = windows,
                .application = windows,
                .mainQueue = queue,
                .log = log,
                .bundle = bundle};
    }

    [[nodiscard]] ui::PermissionsWindow::Mediator permissionsWindowMediator() {
        return {
            .panel = {.firstRun = {.permissions = permissions,
                                   .fileManager = fileManager,
                                   .settings = settings,
                                   .notifications = notifications},
                      .video = {.loopers = videoLoopers, .log = log},
                      .bundle = bundle},
            .control = {.windows = windows, .mainQueue = queue, .notifications = notifications}};
    }

    doubles::CallLog calls;
    doubles::FakeLog log;
    doubles::ManualMainQueue queue;
    doubles::FakeHotKeyService hotKeys;
    doubles::FakePermissions permissions;
    doubles::FakeFileManager fileManager;
    doubles::FakeWindows windows;
    doubles::FakeKeyMonitor keyMonitor;
    doubles::FakeLoginItemService loginItems;
    doubles::FakeVideoLoopers videoLoopers;
    doubles::MemorySettingsBackend backend;
    app::SettingsStore settings{backend};
    app::NotificationCenter notifications;
    std::unique_ptr<shortcuts::ShortcutManager> manager;
    base::Bundle bundle{.location = "/usr/share/applications/app.lumaframe.Lumaframe.desktop",
                        .icon = LUMAFRAME_APPLICATION_ICON};
};

}  // namespace ui_tests
